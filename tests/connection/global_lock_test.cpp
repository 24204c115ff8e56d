// The library-wide lock: re-entrant for its owner, exclusive against other threads.
#include <ostrel.h>

#include <thread>

#include <gtest/gtest.h>

#include "lock_probe.h"

namespace {

TEST(GlobalLock, EnterAndLeavePair) {
    ostrelEnter();
    EXPECT_FALSE(FreeForOtherThreads());
    ostrelLeave();
    EXPECT_TRUE(FreeForOtherThreads());
}

// Nested entries and assignment between locks on the owner's thread neither block nor unbalance.
TEST(GlobalLock, NestedScopesOnOneThreadDoNotBlock) {
    {
        COstrelLock outer;
        {
            COstrelLock inner;
            ostrelEnter();
            ostrelLeave();
            outer = inner;
        }
        EXPECT_FALSE(FreeForOtherThreads()) << "leaving the inner scope released the outer one";
    }
    EXPECT_TRUE(FreeForOtherThreads());
}

} // namespace
