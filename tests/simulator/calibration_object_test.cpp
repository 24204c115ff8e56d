// camsim's calibration object, out of process, loaded with the sample records, and the faults
// SimSetFault injects into its slots for the whole server process.
#include <cmath>
#include <tuple>

#include "server_session.h"

namespace {

class SimulatorCalibration : public ServerTest {
protected:
    void SetUp() override {
        ServerTest::SetUp();
        const auto factory = ReadSample(L"factory_cal.txt");
        const auto object = ReadSample(L"object_params.txt");
        ASSERT_TRUE(factory && object) << "sample records missing or malformed";
        factory_ = *factory;
        object_ = *object;
        low_ = static_cast<std::uint32_t>(factory_.at("countsLow"));
        high_ = static_cast<std::uint32_t>(factory_.at("countsHigh"));
        calibration_ = CreateCalibration();
        ASSERT_TRUE(calibration_ && tables_.Valid());
    }

    void BuildTable() {
        ASSERT_TRUE(LoadFactoryRecord(calibration_.Get(), factory_));
        ASSERT_TRUE(SendObjectRecord(calibration_.Get(), object_));
        ASSERT_TRUE(ComputeLut(calibration_.Get(), tables_));
    }

    float Lut(std::uint32_t count) const { return tables_.Temperatures()[count]; }

    SampleRecord factory_, object_;
    std::uint32_t low_ = 0, high_ = 0;
    ComRef<IOsCalibration> calibration_;
    SharedTables tables_;
};

TEST_F(SimulatorCalibration, SampleTableIsMonotoneAndSpansTheCalibratedRange) {
    BuildTable();
    for (std::uint32_t i = 1; i < SharedTables::kEntries; ++i) {
        ASSERT_TRUE(std::isfinite(Lut(i))) << "count " << i;
        ASSERT_GE(Lut(i), Lut(i - 1)) << "count " << i;
        if (i > low_ && i <= high_) {
            ASSERT_GT(Lut(i), Lut(i - 1)) << "count " << i;
        }
    }
    EXPECT_NEAR(Lut(0), -20.0, 10.0);
    EXPECT_NEAR(Lut(65535), 150.0, 10.0);
}

TEST_F(SimulatorCalibration, TempToCountsInvertsTheTable) {
    BuildTable();
    for (std::uint32_t count = low_; count <= high_; count += 97) {
        unsigned short back = 0;
        BOOL ok = FALSE;
        ASSERT_HRESULT_SUCCEEDED(calibration_->CalTempToCounts(Lut(count), &back, &ok));
        ASSERT_TRUE(ok) << "count " << count;
        ASSERT_LE(std::abs(static_cast<int>(back) - static_cast<int>(count)), 1);
    }
}

TEST_F(SimulatorCalibration, IntegrationTimeAtFollowsTheTable) {
    for (const double time : {2000.0, 3500.0}) {
        factory_["integrationTime"] = time;
        BuildTable();
        for (const std::uint32_t count : {low_, 20000u, high_}) {
            float result = 0.0f;
            BOOL ok = FALSE;
            ASSERT_HRESULT_SUCCEEDED(calibration_->CalIntegrationTimeAt(
                Lut(count) + 273.15f, static_cast<float>(count), &result, 1, &ok));
            ASSERT_TRUE(ok);
            EXPECT_NEAR(result, time, time * 1e-3) << "count " << count;
        }
    }
}

constexpr ULONG kComputeLutSlot = 9;
constexpr ULONG kIsReadySlot = 14; // has no success flag, so every fault fails the call

class SimulatorFaults : public SimulatorCalibration,
                        public ::testing::WithParamInterface<std::tuple<ULONG, LONG>> {
protected:
    void SetUp() override {
        SimulatorCalibration::SetUp();
        controller_ = CreateCalibration();
        ASSERT_TRUE(controller_);
        ASSERT_TRUE(LoadFactoryRecord(calibration_.Get(), factory_));
    }
    // The table is process-wide: leave no fault behind for the next test.
    void TearDown() override {
        if (controller_) {
            controller_->SimSetFault(std::get<0>(GetParam()), 0);
        }
    }

    // A valid call of the slot on the loaded object; the flag stays TRUE for CalIsReady.
    HRESULT Call(ULONG slot, BOOL* ok) {
        if (slot == kIsReadySlot) {
            *ok = TRUE;
            return calibration_->CalIsReady();
        }
        return calibration_->CalComputeLUT(65536, 1, 65535, tables_.CountsName(),
                                           tables_.TemperatureName(), ok);
    }

    ComRef<IOsCalibration> controller_;
};

// Set through one object, the fault shows on another, and clearing it restores the slot.
TEST_P(SimulatorFaults, ModeDecidesHowEveryObjectFails) {
    const auto [slot, mode] = GetParam();
    ASSERT_EQ(controller_->SimSetFault(slot, mode), S_OK);
    BOOL ok = TRUE;
    const HRESULT faulted = Call(slot, &ok);
    if (mode == 1 || slot == kIsReadySlot) {
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
                         ::testing::Combine(::testing::Values(kComputeLutSlot, kIsReadySlot),
                                            ::testing::Values(LONG{1}, LONG{2})));

} // namespace
