// The stress modes run small against the simulator: nothing fails, no handle is left behind, and
// every fault reaches the member that makes the faulty call and goes once it is cleared.
#include <cstring>
#include <map>
#include <utility>

#include <gtest/gtest.h>
#include <server_slots.h>

#include "record_files.h"
#include "stress_modes.h"

namespace {

class StressModes : public testing::Test {
protected:
    static void SetUpTestSuite() {
        std::string error;
        ASSERT_TRUE(
            formats::ReadFactoryCal(OSTREL_SAMPLES_DIR "/factory_cal.txt", sample.record, error) &&
            formats::ReadObjectParams(OSTREL_SAMPLES_DIR "/object_params.txt", sample.params,
                                      error))
            << error;
    }
    static inline stress::SampleCalibration sample;
};

TEST_F(StressModes, LifecyclesLeaveNoHandleBehind) {
    const stress::LifecycleFigures figures = stress::RunLifecycles(50, sample);
    EXPECT_EQ(figures.cycles, 50u);
    EXPECT_EQ(figures.failures, 0u);
    EXPECT_GT(figures.before.handles, 0u) << "the handle probe found none";
    EXPECT_LE(figures.after.handles, figures.before.handles);
}

// Without a held connection, first connections race each other and last releases.
TEST_F(StressModes, ThreadCallsAllAnswerWhetherAConnectionIsHeldOrNot) {
    for (const auto& [threads, held] : {std::pair{2u, true}, std::pair{8u, false}}) {
        const stress::ThreadFigures figures = stress::RunThreadCalls(threads, 25, held);
        EXPECT_EQ(figures.calls, threads * 25);
        EXPECT_EQ(figures.failures, 0u) << (held ? "held" : "churn");
    }
}

// The member whose server call each slot is, for the sample's record of kind 1: LoadFactoryKind2
// is never called.
const std::map<unsigned long, const char*> kFailingMember = {
    {kSlotSetAux, "SetBroadCal"},
    {kSlotComputeLut, "UpdateLUT"},
    {kSlotSetObjectParams, "SetObjectParams"},
    {kSlotTempToCounts, "TempToCounts"},
    {kSlotIsReady, "isAvailable"},
    {kSlotLoadFactoryKind2, nullptr},
    {kSlotSetIntegrationTime, "SetBroadCal"},
    {kSlotLoadFactory, "SetBroadCal"},
    {kSlotIntegrationTimeAt, "GetIntegrationTimeRange"}};

TEST_F(StressModes, EveryFaultReachesItsMemberAndClears) {
    ASSERT_EQ(sample.record.calKind, 1u);
    const stress::FaultFigures figures = stress::RunFaults(sample);
    ASSERT_TRUE(figures.controlled) << "is the simulator registered?";
    ASSERT_EQ(figures.rows.size(), 1 + kFailingMember.size() * 2);
    for (const auto& [member, ok] : figures.rows[0].results) {
        EXPECT_TRUE(ok) << member << " failed without a fault";
    }
    for (std::size_t r = 1; r < figures.rows.size(); ++r) {
        const stress::FaultRow& row = figures.rows[r];
        const char* failing = kFailingMember.at(row.slot);
        for (const auto& [member, ok] : row.results) {
            if (failing != nullptr && std::strcmp(member, failing) == 0) {
                EXPECT_FALSE(ok) << member << " with slot " << row.slot << " mode " << row.mode;
            }
        }
        if (failing == nullptr) {
            EXPECT_EQ(row.results, figures.rows[0].results) << "an unused slot changed a result";
        }
    }
    EXPECT_TRUE(figures.recovered);
}

} // namespace
