// <windows.h> first, as most hosts have it: its Yield macro must not reach CThread::Yield.
#include <windows.h>

#include <vz/singleton.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include <rendezvous.h>

namespace {

constexpr int kRacers = 8;

// Slow to build, so that the other racers find it half made and must wait for it.
struct SlowToBuild {
    static inline std::atomic<int> constructed{0};
    SlowToBuild() {
        ++constructed;
        Sleep(20);
    }
};

using SlowSingleton = vz::TSingletonPtr<SlowToBuild, 10, 0, vz::TSingletonPtrPostCreateDoNothing>;

TEST(SingletonPtr, RacingThreadsShareOneInstance) {
    threading::Rendezvous racersReady(kRacers);
    std::vector<SlowToBuild*> seen(kRacers, nullptr);
    std::vector<std::thread> racers;
    for (int i = 0; i < kRacers; ++i) {
        racers.emplace_back([&racersReady, &seen, i] {
            racersReady.ArriveAndWait();
            seen[i] = SlowSingleton::GetInstance();
        });
    }
    for (std::thread& racer : racers) {
        racer.join();
    }

    EXPECT_EQ(SlowToBuild::constructed, 1);
    ASSERT_NE(seen[0], nullptr);
    for (SlowToBuild* instance : seen) {
        EXPECT_EQ(instance, seen[0]);
    }
}

} // namespace
