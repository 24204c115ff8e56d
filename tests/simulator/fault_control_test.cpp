// SimSetFault: injected failures of the calibration slots, shared by the whole server process.
#include <tuple>

#include "server_session.h"

namespace {

constexpr ULONG kFaultableSlots[] = {8, 9, 10, 13, 14, 15, 16, 17, 18};

// A valid call of one slot on a loaded object; the flag stays TRUE for CalIsReady.
HRESULT CallSlot(ULONG slot, IOsCalibration* c, const SharedTables& tables, BOOL* ok) {
    unsigned short counts = 0;
    float time = 0.0f;
    switch (slot) {
    case 8:
        return c->CalSetAux(20.0f, ok);
    case 9:
        return c->CalComputeLUT(65536, 1, 65535, tables.CountsName(), tables.TemperatureName(), ok);
    case 10:
        return c->CalSetObjectParams(0.98f, 22.0f, 0.99f, 18.0f, 1, ok);
    case 13:
        return c->CalTempToCounts(20.0f, &counts, ok);
    case 14:
        *ok = TRUE;
        return c->CalIsReady();
    case 15:
        return c->CalLoadFactoryKind2(2, 987500, 1430, 1, -6000, 1000, -6, 63536, 860, 423.15f,
                                      253.15f, ok);
    case 16:
        return c->CalSetIntegrationTime(2000, ok);
    case 17:
        return c->CalLoadFactory(1, 3950000, 1430, 1, -6000, 1000, -6, 63536, 860, 423.15f, 253.15f,
                                 4, ok);
    default:
        return c->CalIntegrationTimeAt(423.15f, 63536, &time, 1, ok);
    }
}

class SimulatorFaults : public ServerTest,
                        public ::testing::WithParamInterface<std::tuple<ULONG, LONG>> {
protected:
    void SetUp() override {
        ServerTest::SetUp();
        controller_ = CreateCalibration();
        victim_ = CreateCalibration();
        ASSERT_TRUE(controller_ && victim_ && tables_.Valid());
        BOOL ok = FALSE;
        ASSERT_EQ(CallSlot(17, victim_.Get(), tables_, &ok), S_OK);
        ASSERT_TRUE(ok);
    }
    // The table is process-wide: leave no fault behind for the next test.
    void TearDown() override {
        if (controller_) {
            for (const ULONG slot : kFaultableSlots) {
                controller_->SimSetFault(slot, 0);
            }
        }
    }

    HRESULT Call(ULONG slot, BOOL* ok) { return CallSlot(slot, victim_.Get(), tables_, ok); }

    ComRef<IOsCalibration> controller_;
    ComRef<IOsCalibration> victim_;
    SharedTables tables_;
};

// Set through one object, the fault shows on another, and clearing it restores the slot.
TEST_P(SimulatorFaults, ModeDecidesHowEveryObjectFails) {
    const auto [slot, mode] = GetParam();
    ASSERT_EQ(controller_->SimSetFault(slot, mode), S_OK);
    BOOL ok = TRUE;
    const HRESULT faulted = Call(slot, &ok);
    if (mode == 1 || slot == 14) {
        EXPECT_EQ(faulted, E_FAIL);
    } else {
        EXPECT_EQ(faulted, S_OK);
        EXPECT_FALSE(ok);
    }
    ASSERT_EQ(controller_->SimSetFault(slot, 0), S_OK);
    ok = FALSE;
    EXPECT_EQ(Call(slot, &ok), S_OK);
    EXPECT_TRUE(ok);
}

INSTANTIATE_TEST_SUITE_P(, SimulatorFaults,
                         ::testing::Combine(::testing::ValuesIn(kFaultableSlots),
                                            ::testing::Values(LONG{1}, LONG{2})));

TEST_P(SimulatorFaults, OnlyTheFaultedSlotFails) {
    const auto [slot, mode] = GetParam();
    ASSERT_EQ(controller_->SimSetFault(slot, mode), S_OK);
    for (const ULONG other : kFaultableSlots) {
        BOOL ok = FALSE;
        if (other != slot) {
            EXPECT_EQ(Call(other, &ok), S_OK) << "slot " << other;
            EXPECT_TRUE(ok) << "slot " << other;
        }
    }
}

class SimulatorFaultArguments : public SimulatorFaults {};

TEST_P(SimulatorFaultArguments, UnknownSlotsAndModesAreRejected) {
    const auto [slot, mode] = GetParam();
    EXPECT_EQ(controller_->SimSetFault(slot, mode), E_INVALIDARG);
}

INSTANTIATE_TEST_SUITE_P(
    , SimulatorFaultArguments,
    ::testing::Values(std::tuple<ULONG, LONG>{3, 1}, std::tuple<ULONG, LONG>{7, 1},
                      std::tuple<ULONG, LONG>{11, 2}, std::tuple<ULONG, LONG>{19, 1},
                      std::tuple<ULONG, LONG>{8, 3}, std::tuple<ULONG, LONG>{8, -1}));

} // namespace
