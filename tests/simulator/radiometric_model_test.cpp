// The simulator's radiometric model on its own, without COM.
#include "radiometric_model.h"

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace camsim;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A long-wave detector calibrated from -20 to 150 degC; kind 1 gives R as a ratio.
FactoryCalibration RatioCalibration() {
    return {1, {3950000, 1430, 1, -6000, 1000, -6}, 4, 860, 63536, 253.15, 423.15};
}

// The same detector with R given directly.
FactoryCalibration DirectCalibration() {
    return {2, {987500, 1430, 1, -6000, 1000, -6}, 0, 860, 63536, 253.15, 423.15};
}

RadiometricModel Loaded(const FactoryCalibration& calibration, std::int32_t time = 2000,
                        double aux = 20, const ObjectParameters& object = {}) {
    RadiometricModel model;
    EXPECT_TRUE(model.LoadFactory(calibration) && model.SetIntegrationTime(time) &&
                model.SetAux(aux) && model.SetObjectParameters(object));
    return model;
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
        model_ = Loaded(s.calibration, s.time, s.aux, s.object);
        const auto conversion = model_.Current();
        ASSERT_TRUE(conversion);
        std::vector<std::uint16_t> counts(65536);
        for (std::size_t i = 0; i < counts.size(); ++i) {
            counts[i] = static_cast<std::uint16_t>(i);
        }
        table_.resize(counts.size());
        ASSERT_TRUE(conversion->FillCelsius(counts, 65535, table_));
    }
    bool Analytic(std::size_t count) const {
        const double kelvin = table_[count] + kCelsiusOffset;
        return kelvin >= kFloorK && kelvin <= kCeilingK;
    }

    RadiometricModel model_;
    std::vector<float> table_;
};

TEST_P(SimulatorModelSettings, EveryCountHasAFiniteMonotoneTemperature) {
    for (std::size_t i = 1; i < table_.size(); ++i) {
        ASSERT_TRUE(std::isfinite(table_[i]) && table_[i] >= -kCelsiusOffset) << "count " << i;
        ASSERT_GE(table_[i], table_[i - 1]) << "count " << i;
    }
}

TEST_P(SimulatorModelSettings, CountsSurviveTheTripThroughTemperature) {
    unsigned checked = 0;
    for (std::size_t i = 0; i < table_.size(); ++i) {
        if (Analytic(i)) {
            const auto back = model_.Current()->NearestCount(table_[i]);
            ASSERT_TRUE(back) << "count " << i;
            ASSERT_LE(std::abs(static_cast<int>(*back) - static_cast<int>(i)), 1);
            ++checked;
        }
    }
    EXPECT_GT(checked, 1000u);
}

TEST_P(SimulatorModelSettings, IntegrationTimeAtAnswersTheTimeInEffect) {
    for (const std::size_t count : {900, 20000, 40000, 63000}) {
        if (Analytic(count)) {
            const auto time =
                model_.IntegrationTimeAt(model_.Current()->TemperatureK(count), count);
            ASSERT_TRUE(time) << "count " << count;
            EXPECT_NEAR(*time, GetParam().time, GetParam().time * 1e-9) << "count " << count;
        }
    }
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

TEST(SimulatorModel, BothKindsDescribeTheSameDetector) {
    const auto ratio = Loaded(RatioCalibration()).Current();
    const auto direct = Loaded(DirectCalibration()).Current();
    for (const double count : {0.0, 860.0, 30000.0, 65535.0}) {
        EXPECT_DOUBLE_EQ(ratio->TemperatureK(count), direct->TemperatureK(count));
    }
}

TEST(SimulatorModel, GreyObjectInEqualSurroundingsLooksLikeABlackbody) {
    const auto blackbody = Loaded(RatioCalibration()).Current();
    const auto grey = Loaded(RatioCalibration(), 2000, 20, {0.4, 60, 0.7, 60}).Current();
    EXPECT_NEAR(grey->Count(60 + kCelsiusOffset), blackbody->Count(60 + kCelsiusOffset), 1e-6);
}

TEST(SimulatorModel, DriftAndIntegrationTimeActOnTheSignal) {
    const auto base = Loaded(RatioCalibration(), 2000, 0).Current();
    const auto warmer = Loaded(RatioCalibration(), 2000, 10).Current();
    const auto longer = Loaded(RatioCalibration(), 4000, 0).Current();
    const double offset = -6000;
    for (const double kelvin : {260.0, 330.0, 410.0}) {
        EXPECT_NEAR(warmer->Count(kelvin) - base->Count(kelvin), -60.0, 1e-6); // -6 per unit
        EXPECT_NEAR(longer->Count(kelvin) - offset, 2 * (base->Count(kelvin) - offset), 1e-6);
    }
}

TEST(SimulatorModel, ReferenceTimeHoldsUntilAnIntegrationTimeIsSet) {
    RadiometricModel model;
    EXPECT_FALSE(model.Current());
    EXPECT_FALSE(model.IntegrationTimeAt(300, 1000));
    ASSERT_TRUE(model.LoadFactory(RatioCalibration()));
    const auto time = model.IntegrationTimeAt(300, model.Current()->Count(300));
    ASSERT_TRUE(time);
    EXPECT_NEAR(*time, 1000, 1e-6);
}

TEST(SimulatorModel, QuestionsWithoutAnswerAreRefused) {
    const RadiometricModel model = Loaded(RatioCalibration());
    const auto conversion = model.Current();
    EXPECT_FALSE(conversion->NearestCount(-273.15));
    EXPECT_FALSE(conversion->NearestCount(kNaN));
    EXPECT_FALSE(conversion->NearestCount(1000));      // far beyond count 65535
    EXPECT_FALSE(model.IntegrationTimeAt(300, -6200)); // no signal above the offset
    EXPECT_FALSE(model.IntegrationTimeAt(kCeilingK + 1, 1000));
    const std::vector<std::uint16_t> counts{10, 4097};
    std::vector<float> celsius(2), shorter(1);
    EXPECT_FALSE(conversion->FillCelsius(counts, 4096, celsius));
    EXPECT_FALSE(conversion->FillCelsius(counts, 65535, shorter));
}

// ---- Nonsense inputs are refused and change nothing ----

struct Refusal {
    std::string name;
    std::function<bool(RadiometricModel&)> apply;
};

Refusal Factory(std::string name, const std::function<void(FactoryCalibration&)>& change) {
    FactoryCalibration calibration = RatioCalibration();
    change(calibration);
    return {std::move(name), [calibration](auto& model) { return model.LoadFactory(calibration); }};
}

Refusal Object(std::string name, ObjectParameters object) {
    return {std::move(name), [object](auto& model) { return model.SetObjectParameters(object); }};
}

void PrintTo(const Refusal& refusal, std::ostream* out) {
    *out << refusal.name;
}

class SimulatorModelRefusals : public ::testing::TestWithParam<Refusal> {};

TEST_P(SimulatorModelRefusals, LeaveTheConversionAsItWas) {
    RadiometricModel model = Loaded(RatioCalibration());
    const double before = model.Current()->TemperatureK(20000);
    EXPECT_FALSE(GetParam().apply(model));
    EXPECT_EQ(model.Current()->TemperatureK(20000), before);
}

INSTANTIATE_TEST_SUITE_P(
    , SimulatorModelRefusals,
    ::testing::Values(
        Factory("ZeroR", [](auto& c) { c.coef[0] = 0; }),
        Factory("NegativeB", [](auto& c) { c.coef[1] = -1430; }),
        Factory("PoleInsideRange", [](auto& c) { c.coef[2] = 3; }),
        Factory("OverflowingB", [](auto& c) { c.coef[1] = 2e5; }),
        Factory("ZeroReferenceTime", [](auto& c) { c.coef[4] = 0; }),
        Factory("NaNDrift", [](auto& c) { c.coef[5] = kNaN; }),
        Factory("RatioWithoutDenominator", [](auto& c) { c.coefExtra = 0; }),
        Factory("CountsReversed", [](auto& c) { std::swap(c.countsLow, c.countsHigh); }),
        Factory("CountsBeyond16Bits", [](auto& c) { c.countsHigh = 70000; }),
        Factory("TemperatureBelowModel", [](auto& c) { c.tempMinK = 100; }),
        Object("ZeroEmissivity", {0, 20, 1, 20}), Object("EmissivityAboveOne", {1.5, 20, 1, 20}),
        Object("ReflectedBelowAbsoluteZero", {0.9, -300, 1, 20}),
        Object("NaNAtmosphere", {0.9, 20, 0.9, kNaN}),
        Refusal{"ZeroIntegrationTime", [](auto& model) { return model.SetIntegrationTime(0); }},
        Refusal{"InfiniteAux", [](auto& model) { return model.SetAux(HUGE_VAL); }}),
    [](const auto& info) { return info.param.name; });

} // namespace
