// Single values, the reverse conversion and the range queries, seen by a recording fake.
#include <vector>

#include "engine_fixture.h"

namespace engine_test {
namespace {

class ScalarConversions : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        record = SampleRecord(2);
        ASSERT_TRUE(engine->SetBroadCal(1, &record));
    }
    vz::reduce::CQuilloFactoryCalReduceObject record;
};

TEST_F(ScalarConversions, TempToCountsAsksTheServerInCelsius) {
    Log().counts = 4321;
    unsigned short counts = 0;
    ASSERT_TRUE(engine->TempToCounts(1, 212.0f, &counts, vz::eFahrenheit));
    EXPECT_EQ(4321, counts);
    EXPECT_EQ(std::vector<double>{100.0}, Log().calls.back().numbers);
    EXPECT_TRUE(Log().CallsTo(kSlotComputeLut).empty()) << "the reverse conversion needs no LUT";

    Fail(kSlotTempToCounts, S_OK, FALSE);
    EXPECT_FALSE(engine->TempToCounts(1, 20.0f, &counts, vz::eCelsius));
}

// A failed call at either end leaves both outputs as they were.
TEST_F(ScalarConversions, IntegrationTimesComeFromBothEndsOfTheCalibratedRange) {
    Log().integrationTime = [](float tempK) { return tempK > 300.0f ? 99.9f : 4000.7f; };
    unsigned long minTime = 0, maxTime = 0;
    ASSERT_TRUE(engine->GetIntegrationTimeRange(1, minTime, maxTime));
    EXPECT_EQ(4000u, minTime);
    EXPECT_EQ(99u, maxTime);
    const auto calls = Log().CallsTo(kSlotIntegrationTimeAt);
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ((std::vector<double>{423.15f, 60000, 1}), calls[0].numbers);
    EXPECT_EQ((std::vector<double>{253.15f, 1000, 1}), calls[1].numbers);

    // The low end's call, the second, fails.
    Log().integrationTime = [this](float tempK) {
        if (tempK < 300.0f) {
            Fail(kSlotIntegrationTimeAt, S_OK, FALSE);
        }
        return 1.0f;
    };
    EXPECT_FALSE(engine->GetIntegrationTimeRange(1, minTime, maxTime));
    EXPECT_EQ(4000u, minTime);
    EXPECT_EQ(99u, maxTime);
}

TEST_F(ScalarConversions, TempRangeReloadsTheObjectIgnoringItsAnswersAndKeepsTheRecord) {
    ServeTable([](int i) { return -40.0f + 0.005f * i; });
    const size_t before = CallCount();
    for (const int slot :
         {kSlotIsReady, kSlotLoadFactoryKind2, kSlotSetIntegrationTime, kSlotSetAux}) {
        Fail(slot, E_FAIL, FALSE);
    }
    float minTemp = 0, maxTemp = 0;
    ASSERT_TRUE(engine->GetTempRangeFromIntTime(1, 777, minTemp, maxTemp));
    EXPECT_EQ((std::vector<int>{kSlotIsReady, kSlotLoadFactoryKind2, kSlotSetIntegrationTime,
                                kSlotSetAux, kSlotComputeLut}),
              Log().SlotsFrom(before));
    EXPECT_EQ(std::vector<double>{777}, Log().CallsTo(kSlotSetIntegrationTime).back().numbers);
    // The inclusive scan over 1000..60000 is clamped into the limits -20 .. 150.
    EXPECT_EQ(static_cast<float>(double(253.15f) - 273.15), minTemp);
    EXPECT_EQ(static_cast<float>(double(423.15f) - 273.15), maxTemp);
    vz::reduce::CQuilloFactoryCalReduceObject stored;
    engine->GetBroadCal(1, &stored);
    EXPECT_EQ(record.integrationTime, stored.integrationTime);
}

// Entries near zero snap to zero; with reversed counts the low entry is reported, clamped.
TEST_F(ScalarConversions, TempRangeEdgeCases) {
    ServeTable([](int) { return 0.0005f; });
    auto nearZero = record;
    nearZero.tempMinK = 200.0f;
    ASSERT_TRUE(engine->SetBroadCal(1, &nearZero));
    float minTemp = 1, maxTemp = 1;
    ASSERT_TRUE(engine->GetTempRangeFromIntTime(1, 100, minTemp, maxTemp));
    EXPECT_EQ(0.0f, minTemp);
    EXPECT_EQ(0.0f, maxTemp);

    ServeTable([](int i) { return i == 5000 ? 500.0f : 20.0f; });
    record.countsLow = 5000;
    record.countsHigh = 100;
    ASSERT_TRUE(engine->SetBroadCal(1, &record));
    ASSERT_TRUE(engine->GetTempRangeFromIntTime(1, 100, minTemp, maxTemp));
    const float high = static_cast<float>(double(record.tempMaxK) - 273.15);
    EXPECT_EQ(high, minTemp);
    EXPECT_EQ(high, maxTemp);

    // The scan takes in its last count, and counts beyond the table read its last entry.
    ServeTable([](int i) { return i == 3000 ? 40.0f : i == 65535 ? 30.0f : 20.0f; });
    record.countsLow = 1000;
    record.countsHigh = 3000;
    ASSERT_TRUE(engine->SetBroadCal(1, &record));
    ASSERT_TRUE(engine->GetTempRangeFromIntTime(1, 100, minTemp, maxTemp));
    EXPECT_EQ(20.0f, minTemp);
    EXPECT_EQ(40.0f, maxTemp);
    record.countsLow = 70000;
    record.countsHigh = 90000;
    ASSERT_TRUE(engine->SetBroadCal(1, &record));
    ASSERT_TRUE(engine->GetTempRangeFromIntTime(1, 100, minTemp, maxTemp));
    const float last = engine->GetLUTOutput(1)[65535];
    EXPECT_EQ(last, minTemp);
    EXPECT_EQ(last, maxTemp);
}

TEST_F(ScalarConversions, OneCountReadsItsLutEntryAndStatus) {
    ServeTable([](int i) { return 20.0f + 0.01f * (i - 1000); });
    float temp = 0;
    unsigned char status = 99;
    ASSERT_TRUE(engine->CountsToTemp(1, 65535, &temp, &status, vz::eCelsius));
    EXPECT_EQ(engine->GetLUTOutput(1)[65535], temp);
    EXPECT_EQ(engine->GetLUTStatus(1)[65535], status);
    float kelvin = 0;
    ASSERT_TRUE(engine->CountsToTemp(1, 30000, &kelvin, nullptr, vz::eKelvin));
    EXPECT_EQ(static_cast<float>(double(engine->GetLUTOutput(1)[30000]) + 273.15), kelvin);
}

} // namespace
} // namespace engine_test
