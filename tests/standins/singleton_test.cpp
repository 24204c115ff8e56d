// <windows.h> first, as most hosts have it: its Yield macro must not reach CThread::Yield.
#include <windows.h>

#include <vz/singleton.h>

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>
#include <vector>

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
    std::latch racersReady(kRacers);
    std::vector<SlowToBuild*> seen(kRacers, nullptr);
    std::vector<std::thread> racers;
    for (int i = 0; i < kRacers; ++i) {
        racers.emplace_back([&racersReady, &seen, i] {
            racersReady.arrive_and_wait();
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
    EXPECT_EQ(SlowSingleton::m_pInst, seen[0]);
    EXPECT_EQ(SlowSingleton::m_InstFirst, 1);
    EXPECT_EQ(SlowSingleton::m_InstDone, 1);
}

struct Settings {
    int value = 0;
};

using SettingsSingleton = vz::TSingletonPtr<Settings, 10, 0, vz::TSingletonPtrPostCreateDoNothing>;

TEST(SingletonPtr, EveryHolderReachesTheSameInstance) {
    SettingsSingleton holder;
    holder->value = 5;

    const SettingsSingleton copy(holder);
    SettingsSingleton assigned;
    assigned = copy;

    EXPECT_EQ((*copy).value, 5);
    EXPECT_EQ(static_cast<Settings*>(assigned), SettingsSingleton::GetInstance());
    EXPECT_EQ(SettingsSingleton::m_pInst, SettingsSingleton::GetInstance());
}

struct CountsDestruction {
    static inline int destroyed = 0;
    ~CountsDestruction() { ++destroyed; }
};

TEST(SingletonPtr, DeleteDestroysAndIgnoresNull) {
    using Holder =
        vz::TSingletonPtr<CountsDestruction, 10, 0, vz::TSingletonPtrPostCreateDoNothing>;

    const int destroyedBefore = CountsDestruction::destroyed;
    Holder::Delete(nullptr);
    EXPECT_EQ(CountsDestruction::destroyed, destroyedBefore);
    Holder::Delete(new CountsDestruction);
    EXPECT_EQ(CountsDestruction::destroyed, destroyedBefore + 1);
}

TEST(DeleteAtExit, RefusesANullDeleter) {
    EXPECT_THROW(vz::Private::DeleteAtExit(nullptr, 1, nullptr), vz::CException);
}

} // namespace
