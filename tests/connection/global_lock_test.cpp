// The library-wide lock: re-entrant for its owner, exclusive against other threads.
#include <ostrel.h>

#include <thread>

#include <gtest/gtest.h>

#include "global_lock.h"

namespace {

// Whether another thread could take the lock right now.
bool FreeForOtherThreads() {
    bool entered = false;
    std::thread other([&] {
        entered = TryEnterCriticalSection(&OstrelSection()) != 0;
        if (entered) {
            LeaveCriticalSection(&OstrelSection());
        }
    });
    other.join();
    return entered;
}

TEST(GlobalLock, EnterAndLeavePair) {
    ostrelEnter();
    EXPECT_FALSE(FreeForOtherThreads());
    ostrelLeave();
    EXPECT_TRUE(FreeForOtherThreads());
}

TEST(GlobalLock, NestedScopesOnOneThreadDoNotBlock) {
    {
        COstrelLock outer;
        {
            COstrelLock inner;
            ostrelEnter();
            ostrelLeave();
        }
        EXPECT_FALSE(FreeForOtherThreads()) << "leaving the inner scope released the outer one";
    }
    EXPECT_TRUE(FreeForOtherThreads());
}

TEST(GlobalLock, AssignmentNeitherTakesNorReleases) {
    {
        COstrelLock a;
        {
            COstrelLock b;
            a = b;
        }
        EXPECT_FALSE(FreeForOtherThreads());
    }
    EXPECT_TRUE(FreeForOtherThreads()) << "the entries are no longer balanced";
}

TEST(GlobalLock, AnotherThreadWaitsUntilTheOwnerLeaves) {
    ostrelEnter();
    bool otherEntered = false;
    std::thread other([&] {
        COstrelLock lock;
        otherEntered = true;
    });
    Sleep(50);
    EXPECT_FALSE(otherEntered);
    ostrelLeave();
    other.join();
    EXPECT_TRUE(otherEntered);
}

TEST(ServerVersion, FalseAndOutputsUntouchedWithoutAConnection) {
    unsigned long major = 11, minor = 22, build = 33;
    EXPECT_FALSE(GetOstrelVersion(major, minor, build));
    EXPECT_EQ(11u, major);
    EXPECT_EQ(22u, minor);
    EXPECT_EQ(33u, build);
}

} // namespace
