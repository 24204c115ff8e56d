#include <vz/invoker.h>

#include <vz/log.h>

#include <unique_resource.h>

#include "exclusive_lock.h"

#include <exception>
#include <memory>
#include <new>
#include <string>

// The start of this module's image, which is its instance handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace vz {

CMessageQueueInvoker messageQueueInvoker;

namespace {

const wchar_t kWindowClass[] = L"vzMessageQueueInvoker";
// Asks the window to run the queued calls.
const UINT kRunQueuedCalls = WM_USER;

HINSTANCE ThisModule() {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

void RequireCall(const IInvokable* call) {
    if (call == nullptr) {
        throw CException(L"The call to run is null.");
    }
}

CException NotAttached() {
    return CException(L"No thread is attached to the invoker.");
}

} // namespace

struct CMessageQueueInvoker::Completion {
    owners::UniqueHandle done;
    std::exception_ptr error;
};

IInvoker::~IInvoker() = default;

CMessageQueueInvoker::CMessageQueueInvoker()
    : mWindow(nullptr), mThreadId(0), mQueue(kGrowByDoubling) {
    InitializeSRWLock(&mLock);
}

CMessageQueueInvoker::~CMessageQueueInvoker() {
    if (mWindow != nullptr) {
        if (mThreadId == GetCurrentThreadId()) {
            DestroyWindow(mWindow);
        } else {
            // Only its own thread may destroy the window; at least it must not reach us again.
            SetWindowLongPtrW(mWindow, GWLP_USERDATA, 0);
        }
    }
    for (unsigned i = 0; i < mQueue.GetCount(); ++i) {
        const QueuedCall& queued = mQueue[i];
        if (queued.completion != nullptr) {
            queued.completion->error = std::make_exception_ptr(
                CException(L"The invoker was destroyed before running the call."));
            SetEvent(queued.completion->done.get());
        } else if (queued.owned) {
            delete queued.call;
        }
    }
}

void CMessageQueueInvoker::Invoke(IInvokable* call) {
    RequireCall(call);
    Completion completion;
    {
        ExclusiveLock lock(mLock);
        if (mWindow == nullptr) {
            throw NotAttached();
        }
        if (mThreadId != GetCurrentThreadId()) {
            completion.done.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
            if (!completion.done) {
                throw CException(L"Cannot create the event to wait for the call.");
            }
            Enqueue(QueuedCall{call, false, &completion});
        }
    }
    if (!completion.done) {
        call->Invoke();
        return;
    }
    WaitForSingleObject(completion.done.get(), INFINITE);
    if (completion.error) {
        std::rethrow_exception(completion.error);
    }
}

void CMessageQueueInvoker::Post(IInvokable* call, bool takeOwnership) {
    RequireCall(call);
    std::unique_ptr<IInvokable> owned(takeOwnership ? call : nullptr);
    ExclusiveLock lock(mLock);
    Enqueue(QueuedCall{call, takeOwnership, nullptr});
    owned.release();
}

bool CMessageQueueInvoker::AttachToCurrentThread() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = ThisModule();
    windowClass.lpszClassName = kWindowClass;
    if (RegisterClassW(&windowClass) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        return false;
    }
    owners::UniqueWindow window(CreateWindowExW(0, kWindowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                                nullptr, ThisModule(), this));
    if (!window) {
        return false;
    }
    ExclusiveLock lock(mLock);
    if (mWindow != nullptr) {
        return false;
    }
    mWindow = window.release();
    mThreadId = GetCurrentThreadId();
    if (mQueue.GetCount() != 0) {
        PostMessageW(mWindow, kRunQueuedCalls, 0, 0);
    }
    return true;
}

bool CMessageQueueInvoker::Detach() {
    owners::UniqueWindow window;
    {
        ExclusiveLock lock(mLock);
        if (mWindow == nullptr || mThreadId != GetCurrentThreadId()) {
            return false;
        }
        window.reset(mWindow);
        mWindow = nullptr;
        mThreadId = 0;
    }
    RunQueuedCalls();
    return true;
}

void CMessageQueueInvoker::Enqueue(const QueuedCall& call) {
    const bool wasEmpty = mQueue.GetCount() == 0;
    if (!mQueue.Add(call)) {
        throw std::bad_alloc();
    }
    // The window empties the whole queue, so one request is enough until it is empty again.
    if (wasEmpty && mWindow != nullptr) {
        PostMessageW(mWindow, kRunQueuedCalls, 0, 0);
    }
}

void CMessageQueueInvoker::RunQueuedCalls() {
    for (;;) {
        QueuedCall next;
        {
            ExclusiveLock lock(mLock);
            if (mQueue.GetCount() == 0) {
                return;
            }
            next = mQueue[0];
            mQueue.RemoveAt(0);
        }
        Run(next);
    }
}

void CMessageQueueInvoker::Run(const QueuedCall& queued) {
    if (queued.completion != nullptr) {
        try {
            queued.call->Invoke();
        } catch (...) {
            queued.completion->error = std::current_exception();
        }
        // The waiting caller may end the completion's life as soon as it is signalled.
        SetEvent(queued.completion->done.get());
        return;
    }
    std::unique_ptr<IInvokable> owned(queued.owned ? queued.call : nullptr);
    // Nobody waits for a posted call, so its failure can only be reported.
    try {
        queued.call->Invoke();
    } catch (const CException& error) {
        gLog->WriteLine(
            (std::wstring(L"A posted call failed: ") + error.Message().c_str()).c_str());
    } catch (...) {
        gLog->WriteLine(L"A posted call failed with an exception.");
    }
}

LRESULT CALLBACK CMessageQueueInvoker::WindowProc(HWND window, UINT message, WPARAM wParam,
                                                  LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    } else if (message == kRunQueuedCalls) {
        auto* invoker =
            reinterpret_cast<CMessageQueueInvoker*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (invoker != nullptr) {
            invoker->RunQueuedCalls();
        }
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace vz
