#include <vz/invoker.h>
#include <vz/log.h>

#include "message_loop_thread.h"

#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

struct Execution {
    int id;
    DWORD threadId;
    bool operator==(const Execution&) const = default;
};

// What the calls of one test did, from whichever thread they ran on.
class Journal {
public:
    void Ran(int id) {
        std::lock_guard<std::mutex> lock(m_lock);
        m_executions.push_back({id, GetCurrentThreadId()});
    }
    void Deleted() {
        std::lock_guard<std::mutex> lock(m_lock);
        ++m_deleted;
    }
    std::vector<Execution> Executions() {
        std::lock_guard<std::mutex> lock(m_lock);
        return m_executions;
    }
    int DeletedCount() {
        std::lock_guard<std::mutex> lock(m_lock);
        return m_deleted;
    }

private:
    std::mutex m_lock;
    std::vector<Execution> m_executions;
    int m_deleted = 0;
};

class RecordingCall : public vz::IInvokable {
public:
    RecordingCall(Journal& journal, int id) : m_journal(journal), m_id(id) {}
    ~RecordingCall() override { m_journal.Deleted(); }
    void Invoke() override { m_journal.Ran(m_id); }
    bool SameHandler(vz::IInvokable*) override { return false; }

private:
    Journal& m_journal;
    int m_id;
};

class ThrowingCall : public RecordingCall {
public:
    using RecordingCall::RecordingCall;
    void Invoke() override {
        RecordingCall::Invoke();
        throw vz::CException(L"boom");
    }
};

// Returns once every call queued before it has run: the queue is first in, first out.
void WaitForQueuedCalls(vz::IInvoker& invoker) {
    Journal ignored;
    RecordingCall marker(ignored, 0);
    invoker.Invoke(&marker);
}

// Runs whatever the calling thread's queue holds.
void PumpPendingMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

class PostFromAnotherThread : public testing::TestWithParam<bool> {};

TEST_P(PostFromAnotherThread, RunsOnTheAttachedThreadAndDeletesOnlyOwnedCalls) {
    const bool takeOwnership = GetParam();
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);
    auto* call = new RecordingCall(journal, 1);

    invoker.Post(call, takeOwnership);
    WaitForQueuedCalls(invoker);

    EXPECT_EQ(journal.Executions(), std::vector<Execution>{(Execution{1, loop.ThreadId()})});
    EXPECT_EQ(journal.DeletedCount(), takeOwnership ? 1 : 0);
    if (!takeOwnership) {
        delete call;
    }
}

INSTANTIATE_TEST_SUITE_P(Ownership, PostFromAnotherThread, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& info) {
                             return info.param ? "Owned" : "Borrowed";
                         });

TEST(MessageQueueInvoker, InvokeFromAnotherThreadWaitsAndLeavesOwnershipToTheCaller) {
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);
    RecordingCall call(journal, 7);

    invoker.Invoke(&call);

    EXPECT_EQ(journal.Executions(), std::vector<Execution>{(Execution{7, loop.ThreadId()})});
    EXPECT_EQ(journal.DeletedCount(), 0);
}

TEST(MessageQueueInvoker, CallsPostedBeforeAttachingRunInOrderOnceAttached) {
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    for (int id = 1; id <= 3; ++id) {
        invoker.Post(new RecordingCall(journal, id), true);
    }
    EXPECT_TRUE(journal.Executions().empty());

    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);
    WaitForQueuedCalls(invoker);

    const DWORD thread = loop.ThreadId();
    EXPECT_EQ(journal.Executions(),
              (std::vector<Execution>{{1, thread}, {2, thread}, {3, thread}}));
    EXPECT_EQ(journal.DeletedCount(), 3);
}

TEST(MessageQueueInvoker, PostsFromManyThreadsEachRunOnceInTheirOrder) {
    constexpr int kThreads = 4;
    constexpr int kPostsPerThread = 100;
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);

    std::vector<std::thread> posters;
    for (int thread = 0; thread < kThreads; ++thread) {
        posters.emplace_back([&invoker, &journal, thread] {
            for (int i = 0; i < kPostsPerThread; ++i) {
                invoker.Post(new RecordingCall(journal, thread * kPostsPerThread + i), true);
            }
        });
    }
    for (std::thread& poster : posters) {
        poster.join();
    }
    WaitForQueuedCalls(invoker);

    const std::vector<Execution> executions = journal.Executions();
    ASSERT_EQ(executions.size(), static_cast<std::size_t>(kThreads * kPostsPerThread));
    std::vector<int> nextOfThread(kThreads, 0);
    for (const Execution& execution : executions) {
        EXPECT_EQ(execution.threadId, loop.ThreadId());
        const int thread = execution.id / kPostsPerThread;
        EXPECT_EQ(execution.id % kPostsPerThread, nextOfThread[thread]++) << "poster " << thread;
    }
    EXPECT_EQ(journal.DeletedCount(), kThreads * kPostsPerThread);
}

TEST(MessageQueueInvoker, OnTheAttachedThreadInvokeRunsAtOnceAndPostWaitsForThePump) {
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    ASSERT_TRUE(invoker.AttachToCurrentThread());
    RecordingCall posted(journal, 1);
    RecordingCall invoked(journal, 2);

    invoker.Post(&posted, false);
    invoker.Invoke(&invoked);
    const std::vector<Execution> beforePump = journal.Executions();
    PumpPendingMessages();

    const DWORD self = GetCurrentThreadId();
    EXPECT_EQ(beforePump, std::vector<Execution>{(Execution{2, self})});
    EXPECT_EQ(journal.Executions(), (std::vector<Execution>{{2, self}, {1, self}}));
    EXPECT_TRUE(invoker.Detach());
}

TEST(MessageQueueInvoker, ExceptionOfAnInvokedCallReachesTheCaller) {
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);
    ThrowingCall call(journal, 1);

    try {
        invoker.Invoke(&call);
        ADD_FAILURE() << "the call's exception was lost";
    } catch (const vz::CException& error) {
        EXPECT_STREQ(error.Message().c_str(), L"boom");
    }
    EXPECT_EQ(journal.Executions(), std::vector<Execution>{(Execution{1, loop.ThreadId()})});
}

void CaptureLine(const wchar_t* line, void* context) {
    static_cast<std::vector<std::wstring>*>(context)->push_back(line);
}

TEST(MessageQueueInvoker, ExceptionOfAPostedCallIsLoggedAndTheCallDeleted) {
    Journal journal;
    std::vector<std::wstring> lines;
    vz::CMessageQueueInvoker invoker;
    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);
    vz::gLog->SetWriter(CaptureLine, &lines);

    invoker.Post(new ThrowingCall(journal, 1), true);
    WaitForQueuedCalls(invoker);
    vz::gLog->SetWriter(nullptr, nullptr);

    EXPECT_EQ(lines, std::vector<std::wstring>{L"A posted call failed: boom"});
    EXPECT_EQ(journal.DeletedCount(), 1);
}

TEST(MessageQueueInvoker, WithoutAnAttachedThreadInvokeThrows) {
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    RecordingCall call(journal, 1);

    EXPECT_THROW(invoker.Invoke(&call), vz::CException);
    EXPECT_THROW(invoker.Invoke(nullptr), vz::CException);
    EXPECT_THROW(invoker.Post(nullptr, true), vz::CException);
    EXPECT_TRUE(journal.Executions().empty());
}

TEST(MessageQueueInvoker, OnlyOneThreadAttachesAndOnlyItDetaches) {
    vz::CMessageQueueInvoker invoker;
    MessageLoopThread loop(invoker);
    ASSERT_NE(loop.ThreadId(), 0u);

    EXPECT_FALSE(invoker.AttachToCurrentThread());
    EXPECT_FALSE(invoker.Detach());
}

TEST(MessageQueueInvoker, DetachRunsTheQueuedCallsThenStopsInvoking) {
    Journal journal;
    vz::CMessageQueueInvoker invoker;
    ASSERT_TRUE(invoker.AttachToCurrentThread());
    invoker.Post(new RecordingCall(journal, 1), true);
    invoker.Post(new RecordingCall(journal, 2), true);

    ASSERT_TRUE(invoker.Detach());

    const DWORD self = GetCurrentThreadId();
    EXPECT_EQ(journal.Executions(), (std::vector<Execution>{{1, self}, {2, self}}));
    EXPECT_EQ(journal.DeletedCount(), 2);
    RecordingCall late(journal, 3);
    EXPECT_THROW(invoker.Invoke(&late), vz::CException);
    EXPECT_FALSE(invoker.Detach());
}

TEST(MessageQueueInvoker, DestructionDeletesOwnedCallsThatNeverRan) {
    Journal journal;
    {
        vz::CMessageQueueInvoker invoker;
        invoker.Post(new RecordingCall(journal, 1), true);
    }
    EXPECT_TRUE(journal.Executions().empty());
    EXPECT_EQ(journal.DeletedCount(), 1);
}

// The process-wide invoker is built when vz.dll loads but attaches to nothing by itself.
TEST(MessageQueueInvoker, GlobalInvokerStartsDetachedAndServesTheThreadThatAttaches) {
    Journal journal;
    RecordingCall call(journal, 1);
    EXPECT_THROW(vz::messageQueueInvoker.Invoke(&call), vz::CException);

    MessageLoopThread loop(vz::messageQueueInvoker);
    ASSERT_NE(loop.ThreadId(), 0u);
    vz::messageQueueInvoker.Invoke(&call);

    EXPECT_EQ(journal.Executions(), std::vector<Execution>{(Execution{1, loop.ThreadId()})});
}

} // namespace
