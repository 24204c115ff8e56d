// The engine against the simulator process: tables built through real shared memory from the
// sample calibration, and conversions both ways.
#include <ostrel.h>

#include <cmath>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "record_files.h"

namespace {

class SimulatorEngine : public testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(formats::ReadFactoryCal(OSTREL_SAMPLES_DIR "/factory_cal.txt", record, error))
            << error;
        ASSERT_TRUE(
            formats::ReadObjectParams(OSTREL_SAMPLES_DIR "/object_params.txt", params, error))
            << error;
        ASSERT_TRUE(engine.SetBroadCal(0, &record)) << "is the simulator registered?";
        ASSERT_TRUE(engine.SetObjectParams(&params));
    }

    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
    vz::CBroadCal engine;
};

// A rising table over the calibrated range whose temperatures go back to their counts within one.
TEST_F(SimulatorEngine, BuildsARisingTableThatConvertsBothWays) {
    const float* lut = engine.GetLUTOutput(0);
    const unsigned char* status = engine.GetLUTStatus(0);
    ASSERT_NE(nullptr, lut);
    ASSERT_NE(nullptr, status);
    unsigned valid = 0;
    for (unsigned i = record.countsLow + 1; i < record.countsHigh; ++i) {
        ASSERT_LE(lut[i - 1], lut[i]) << "at count " << i;
        valid += status[i] == vz::eLUTValid ? 1 : 0;
    }
    EXPECT_GT(valid, (record.countsHigh - record.countsLow) * 9 / 10);
    // The sample calibration spans about -20 to 150 degrees C, held within its 5-degree margins.
    EXPECT_NEAR(-25.0f, lut[0], 0.5f);
    EXPECT_NEAR(157.5f, lut[65535], 0.5f);
    EXPECT_EQ(vz::eLUTBelow, status[0]);
    EXPECT_EQ(vz::eLUTAbove, status[65535]);

    int checked = 0;
    for (unsigned count = record.countsLow; count < record.countsHigh; count += 997) {
        if (status[count] == vz::eLUTValid) {
            unsigned short back = 0;
            ASSERT_TRUE(engine.TempToCounts(0, lut[count], &back, vz::eCelsius));
            EXPECT_LE(std::abs(int(back) - int(count)), 1) << "count " << count;
            ++checked;
        }
    }
    EXPECT_GT(checked, 50);
}

TEST_F(SimulatorEngine, AnswersTheRangesOfItsCalibration) {
    unsigned long minTime = 0, maxTime = 0;
    ASSERT_TRUE(engine.GetIntegrationTimeRange(0, minTime, maxTime));
    EXPECT_GT(minTime, 0u);
    EXPECT_GT(maxTime, 0u);

    float minTemp = 0, maxTemp = 0;
    ASSERT_TRUE(
        engine.GetTempRangeFromIntTime(0, unsigned(record.integrationTime), minTemp, maxTemp));
    EXPECT_NEAR(-20.0f, minTemp, 0.5f);
    EXPECT_NEAR(150.0f, maxTemp, 0.5f);
}

} // namespace
