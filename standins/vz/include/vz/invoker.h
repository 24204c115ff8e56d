#pragma once

#include <vz/api.h>
#include <vz/array.h>
#include <vz/invokable.h>

#include <windows.h>

namespace vz {

// Runs calls on a thread of its choosing.
class VZ_API IInvoker {
public:
    virtual ~IInvoker();
    // Runs call on the invoker's thread and returns when it is done; the caller keeps call.
    virtual void Invoke(IInvokable* call) = 0;
    // Queues call and returns at once; with takeOwnership the invoker deletes it after running.
    virtual void Post(IInvokable* call, bool takeOwnership) = 0;
};

// Runs calls on the thread that attached it, through a hidden message-only window; that thread
// must pump messages. Calls posted while no thread is attached wait until one attaches.
class VZ_API CMessageQueueInvoker : public IInvoker {
public:
    // Creates nothing: no window, no thread.
    CMessageQueueInvoker();
    // Deletes the owned calls it never ran; a caller still waiting gets a CException.
    ~CMessageQueueInvoker() override;
    CMessageQueueInvoker(const CMessageQueueInvoker&) = delete;
    CMessageQueueInvoker& operator=(const CMessageQueueInvoker&) = delete;

    // On the attached thread the call runs at once; from another thread it is queued and the
    // caller waits, receiving any exception the call threw. Throws CException when no thread
    // is attached.
    void Invoke(IInvokable* call) override;
    // Exceptions thrown by posted calls are written to gLog.
    void Post(IInvokable* call, bool takeOwnership) override;

    // Creates the hidden window on the calling thread. False if a thread is already attached
    // or the window cannot be created.
    bool AttachToCurrentThread();
    // On the attached thread: runs the calls already queued, so that no caller waits for
    // ever, then destroys the window. False on any other thread.
    bool Detach();

private:
    struct Completion;
    struct QueuedCall {
        IInvokable* call;
        bool owned;
        // Set for a caller waiting in Invoke, which keeps ownership.
        Completion* completion;
    };

    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    // With the lock held.
    void Enqueue(const QueuedCall& call);
    // On the attached thread, until the queue is empty.
    void RunQueuedCalls();
    static void Run(const QueuedCall& call);

    SRWLOCK mLock;
    HWND mWindow;
    DWORD mThreadId;
    TArray<QueuedCall> mQueue;
};

VZ_API extern CMessageQueueInvoker messageQueueInvoker;

} // namespace vz
