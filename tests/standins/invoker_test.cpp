#include <vz/invoker.h>

#include <gtest/gtest.h>

#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace {

// A thread that attaches an invoker and pumps messages until this object is destroyed, when it
// detaches the invoker again.
class MessageLoopThread {
public:
    explicit MessageLoopThread(vz::CMessageQueueInvoker& invoker) {
        std::promise<DWORD> attached;
        std::future<DWORD> threadId = attached.get_future();
        mThread = std::thread([&invoker, &attached] {
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
        });
        mThreadId = threadId.get();
    }

    ~MessageLoopThread() {
        if (mThreadId != 0) {
            PostThreadMessageW(mThreadId, WM_QUIT, 0, 0);
        }
        mThread.join();
    }

    // 0 when the invoker could not be attached.
    DWORD ThreadId() const { return mThreadId; }

private:
    std::thread mThread;
    DWORD mThreadId = 0;
};

// A call's id and the thread it ran on.
using Execution = std::pair<int, DWORD>;

// What the calls of one test did, from whichever thread they ran on. The tests read it once
// the invoker has run every call, which orders those reads after the writes.
struct Journal {
    std::mutex lock;
    std::vector<Execution> executions;
    int deleted = 0;
};

class RecordingCall : public vz::IInvokable {
public:
    RecordingCall(Journal& journal, int id) : mJournal(journal), mId(id) {}
    ~RecordingCall() override {
        std::lock_guard<std::mutex> lock(mJournal.lock);
        ++mJournal.deleted;
    }
    void Invoke() override {
        std::lock_guard<std::mutex> lock(mJournal.lock);
        mJournal.executions.push_back({mId, GetCurrentThreadId()});
    }
    bool SameHandler(vz::IInvokable*) override { return false; }

private:
    Journal& mJournal;
    int mId;
};

// Invoke from another thread waits for the calls queued before it, which run first in, first out.
TEST(MessageQueueInvoker, RunsCallsOnTheAttachedThreadAndDeletesOnlyOwnedOnes) {
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);
    RecordingCall borrowed(journal, 2);
    RecordingCall invoked(journal, 3);

    invoker.Post(new RecordingCall(journal, 1), true);
    invoker.Post(&borrowed, false);
    invoker.Invoke(&invoked);

    const DWORD thread = loop.ThreadId();
    EXPECT_EQ(journal.executions, (std::vector<Execution>{{1, thread}, {2, thread}, {3, thread}}));
    EXPECT_EQ(journal.deleted, 1);
}

TEST(MessageQueueInvoker, CallsPostedBeforeAttachingRunInOrderOnceAttached) {
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    for (int id = 1; id <= 3; ++id) {
        invoker.Post(new RecordingCall(journal, id), true);
    }
    EXPECT_TRUE(journal.executions.empty());

    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);
    RecordingCall marker(journal, 4);
    invoker.Invoke(&marker);

    const DWORD thread = loop.ThreadId();
    EXPECT_EQ(journal.executions,
              (std::vector<Execution>{{1, thread}, {2, thread}, {3, thread}, {4, thread}}));
    EXPECT_EQ(journal.deleted, 3);
}

} // namespace
