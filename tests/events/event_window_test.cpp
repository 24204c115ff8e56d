// The event window as a host uses it: handlers attached to gOstrelEvents->mEvent, the window
// living on the host's message-queue thread. The C interface's test sends it notifications from
// the simulator process.
#include <ostrel.h>

#include <vz/invoker.h>

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <unique_resource.h>

#include "message_pump.h"

namespace {

using Value = unsigned __int64;

// The host's message-queue thread: vz::messageQueueInvoker runs there, and so does the window.
class MessageQueueThread : public testing::Environment {
public:
    void SetUp() override {
        const owners::UniqueHandle ready(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        mThread = std::thread([ready = ready.get()] {
            MSG message;
            PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE); // the thread's queue exists now
            mThreadId = GetCurrentThreadId();
            vz::messageQueueInvoker.AttachToCurrentThread();
            SetEvent(ready);
            while (GetMessageW(&message, nullptr, 0, 0) > 0) {
                DispatchMessageW(&message);
            }
            vz::messageQueueInvoker.Detach();
        });
        WaitForSingleObject(ready.get(), INFINITE);
    }
    void TearDown() override {
        PostThreadMessageW(mThreadId, WM_QUIT, 0, 0);
        mThread.join();
    }
    static DWORD ThreadId() { return mThreadId; }

private:
    std::thread mThread;
    static inline DWORD mThreadId = 0;
};

testing::Environment* const kMessageQueue =
    testing::AddGlobalTestEnvironment(new MessageQueueThread);

HWND TheEventWindow() {
    COstrelEvents* events = gOstrelEvents;
    EXPECT_TRUE(PumpMessagesUntil([&] { return events->mHwnd != nullptr; }))
        << "the message-queue thread did not create the window";
    return events->mHwnd;
}

struct Call {
    void* sender;
    Value value;
    DWORD thread;
};

// Handlers run on the message-queue thread while the test's thread waits in SendMessage, or on
// the test's thread: never two at once.
struct Recorder {
    void Record(void* sender, Value value) {
        calls.push_back({sender, value, GetCurrentThreadId()});
    }
    std::vector<Call> calls;
};

using Handler = vz::TMemberHandler2<Recorder, void*, Value>;

// An invoker that keeps what is posted to it and runs invoke-and-wait calls at once.
class RecordingInvoker : public vz::IInvoker {
public:
    ~RecordingInvoker() override {
        for (auto& post : posts) {
            if (post.second) {
                delete post.first;
            }
        }
    }
    void Invoke(vz::IInvokable* call) override {
        ++invoked;
        call->Invoke();
    }
    void Post(vz::IInvokable* call, bool takeOwnership) override {
        posts.push_back({call, takeOwnership});
    }
    std::vector<std::pair<vz::IInvokable*, bool>> posts;
    int invoked = 0;
};

// Keeps a handler attached for its scope; declare it after the handler it names.
class Attachment {
public:
    Attachment(vz::IHandler2<void*, Value>* handler, vz::IInvoker* invoker, bool async)
        : mHandler(handler) {
        EXPECT_TRUE(gOstrelEvents->mEvent.Attach(handler, invoker, async));
    }
    ~Attachment() { gOstrelEvents->mEvent.Detach(mHandler); }
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;

private:
    vz::IHandler2<void*, Value>* mHandler;
};

TEST(EventWindow, HandlersRunDirectlyPostedOrThroughTheirInvoker) {
    const HWND window = TheEventWindow();
    Recorder direct, posted, sent;
    Handler directHandler(&direct, &Recorder::Record);
    Handler postedHandler(&posted, &Recorder::Record);
    Handler sentHandler(&sent, &Recorder::Record);
    RecordingInvoker postInvoker, sendInvoker;
    Attachment attachDirect(&directHandler, nullptr, false);
    Attachment attachPosted(&postedHandler, &postInvoker, true);
    Attachment attachSent(&sentHandler, &sendInvoker, false);

    // SendMessage returns when the window procedure has returned.
    SendMessageW(window, WM_USER + 5, 41, 0);
    SendMessageW(window, RegisterWindowMessageW(L"Tamso"), 42, 7);

    ASSERT_EQ(1u, direct.calls.size()) << "only the registered message raises the event";
    EXPECT_EQ(nullptr, direct.calls[0].sender);
    EXPECT_EQ(42u, direct.calls[0].value);
    EXPECT_EQ(MessageQueueThread::ThreadId(), direct.calls[0].thread);

    ASSERT_EQ(1u, postInvoker.posts.size());
    EXPECT_TRUE(postInvoker.posts[0].second) << "the invoker must own what is posted";
    EXPECT_TRUE(posted.calls.empty()) << "a posted handler must not run before its invoker";
    postInvoker.posts[0].first->Invoke();
    ASSERT_EQ(1u, posted.calls.size());
    EXPECT_EQ(42u, posted.calls[0].value);
    EXPECT_EQ(nullptr, posted.calls[0].sender);

    EXPECT_EQ(1, sendInvoker.invoked);
    ASSERT_EQ(1u, sent.calls.size()) << "the sent handler did not finish before the window";
    EXPECT_EQ(42u, sent.calls[0].value);
}

} // namespace
