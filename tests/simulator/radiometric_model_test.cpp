// The simulator's radiometric model on its own, without COM.
#include "radiometric_model.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace camsim;

// A long-wave detector calibrated from -20 to 150 degC; kind 1 gives R as a ratio.
FactoryCalibration RatioCalibration() {
    return {1, {3950000, 1430, 1, -6000, 1000, -6}, 4, 860, 63536, 253.15, 423.15};
}

// The same detector with R given directly.
FactoryCalibration DirectCalibration() {
    return {2, {987500, 1430, 1, -6000, 1000, -6}, 0, 860, 63536, 253.15, 423.15};
}

struct Setting {
    std::string name;
    FactoryCalibration calibration;
    std::int32_t time;
    double aux;
    ObjectParameters object;
};

void PrintTo(const Setting& setting, std::ostream* out) {
    *out << setting.name;
}

class SimulatorModelSettings : public ::testing::TestWithParam<Setting> {
protected:
    void SetUp() override {
        const Setting& s = GetParam();
        ASSERT_TRUE(mModel.LoadFactory(s.calibration) && mModel.SetIntegrationTime(s.time) &&
                    mModel.SetAux(s.aux) && mModel.SetObjectParameters(s.object));
        const auto conversion = mModel.Current();
        ASSERT_TRUE(conversion);
        std::vector<std::uint16_t> counts(65536);
        for (std::size_t i = 0; i < counts.size(); ++i) {
            counts[i] = static_cast<std::uint16_t>(i);
        }
        mTable.resize(counts.size());
        ASSERT_TRUE(conversion->FillCelsius(counts, 65535, mTable));
    }

    RadiometricModel mModel;
    std::vector<float> mTable;
};

TEST_P(SimulatorModelSettings, EveryCountHasAFiniteMonotoneTemperature) {
    for (std::size_t i = 1; i < mTable.size(); ++i) {
        ASSERT_TRUE(std::isfinite(mTable[i]) && mTable[i] >= -kCelsiusOffset) << "count " << i;
        ASSERT_GE(mTable[i], mTable[i - 1]) << "count " << i;
    }
}

TEST_P(SimulatorModelSettings, CountsSurviveTheTripThroughTemperature) {
    unsigned checked = 0;
    for (std::size_t i = 0; i < mTable.size(); ++i) {
        const double kelvin = mTable[i] + kCelsiusOffset;
        if (kelvin >= kFloorK && kelvin <= kCeilingK) {
            const auto back = mModel.Current()->NearestCount(mTable[i]);
            ASSERT_TRUE(back) << "count " << i;
            ASSERT_LE(std::abs(static_cast<int>(*back) - static_cast<int>(i)), 1);
            ++checked;
        }
    }
    EXPECT_GT(checked, 1000u);
}

INSTANTIATE_TEST_SUITE_P(
    , SimulatorModelSettings,
    ::testing::Values(
        Setting{"Blackbody", RatioCalibration(), 2000, 20, {}},
        Setting{"DirectKind", DirectCalibration(), 2000, 20, {}},
        Setting{"SampleObject", RatioCalibration(), 2000, 20, {0.98, 22, 0.99, 18}},
        Setting{"ShortIntegration", RatioCalibration(), 300, 20, {}},
        Setting{"LongIntegration", RatioCalibration(), 60000, 900, {}},
        Setting{"DullObjectWarmSurroundings", DirectCalibration(), 2000, 0, {0.3, 80, 1.0, 20}},
        Setting{"HazyAtmosphere", RatioCalibration(), 2000, 20, {0.9, 20, 0.2, -30}}),
    [](const auto& info) { return info.param.name; });

} // namespace
