#pragma once

#include <vz/invoker.h>

#include <windows.h>

#include <future>
#include <thread>

// A thread that attaches an invoker and pumps messages until this object is destroyed, when it
// detaches the invoker again.
class MessageLoopThread {
public:
    explicit MessageLoopThread(vz::CMessageQueueInvoker& invoker) {
        std::promise<DWORD> attached;
        std::future<DWORD> threadId = attached.get_future();
        m_thread = std::thread([&invoker, &attached] { Run(invoker, attached); });
        m_threadId = threadId.get();
    }

    ~MessageLoopThread() {
        if (m_threadId != 0) {
            PostThreadMessageW(m_threadId, WM_QUIT, 0, 0);
        }
        m_thread.join();
    }

    MessageLoopThread(const MessageLoopThread&) = delete;
    MessageLoopThread& operator=(const MessageLoopThread&) = delete;

    // 0 when the invoker could not be attached.
    DWORD ThreadId() const { return m_threadId; }

private:
    static void Run(vz::CMessageQueueInvoker& invoker, std::promise<DWORD>& attached) {
        if (!invoker.AttachToCurrentThread()) {
            attached.set_value(0);
            return;
        }
        attached.set_value(GetCurrentThreadId());
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            DispatchMessageW(&message);
        }
        invoker.Detach();
    }

    std::thread m_thread;
    DWORD m_threadId = 0;
};
