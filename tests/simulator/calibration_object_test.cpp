// camsim's calibration object, out of process, loaded with the sample records.
#include <cmath>
#include <functional>
#include <string>

#include "server_session.h"

namespace {

const SampleRecord kNeutralObject{
    {"objFactorA", 1}, {"objTempA", 293.15}, {"objTempB", 293.15}, {"objFactorB", 1}};

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

    void BuildTable(const SampleRecord& object) {
        ASSERT_TRUE(LoadFactoryRecord(calibration_.Get(), factory_));
        ASSERT_TRUE(SendObjectRecord(calibration_.Get(), object));
        ASSERT_TRUE(ComputeLut(calibration_.Get(), tables_));
    }

    float Lut(std::uint32_t count) const { return tables_.Temperatures()[count]; }

    SampleRecord factory_, object_;
    std::uint32_t low_ = 0, high_ = 0;
    ComRef<IOsCalibration> calibration_;
    SharedTables tables_;
};

TEST_F(SimulatorCalibration, SampleTableIsMonotoneAndSpansTheCalibratedRange) {
    BuildTable(object_);
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

TEST_F(SimulatorCalibration, SampleCountLimitsMatchItsTemperatureLimits) {
    BuildTable(kNeutralObject);
    EXPECT_NEAR(Lut(low_), factory_.at("tempMinK") - 273.15, 0.05);
    EXPECT_NEAR(Lut(high_), factory_.at("tempMaxK") - 273.15, 0.05);
}

TEST_F(SimulatorCalibration, DirectKindGivesTheSameTable) {
    BuildTable(object_);
    SampleRecord direct = factory_;
    direct["calKind"] = 2;
    direct["calCoef0"] = factory_.at("calCoef0") / factory_.at("calCoefExtra");
    const auto other = CreateCalibration();
    const SharedTables otherTables;
    ASSERT_TRUE(other && otherTables.Valid());
    ASSERT_TRUE(LoadFactoryRecord(other.Get(), direct));
    ASSERT_TRUE(SendObjectRecord(other.Get(), object_));
    ASSERT_TRUE(ComputeLut(other.Get(), otherTables));
    for (std::uint32_t i = 0; i < SharedTables::kEntries; i += 61) {
        ASSERT_EQ(otherTables.Temperatures()[i], Lut(i)) << "count " << i;
    }
}

TEST_F(SimulatorCalibration, TempToCountsInvertsTheTable) {
    BuildTable(object_);
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
        BuildTable(object_);
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

TEST_F(SimulatorCalibration, EachObjectKeepsItsOwnCalibration) {
    BuildTable(object_);
    const auto fresh = CreateCalibration();
    ASSERT_TRUE(fresh);
    BOOL ok = TRUE;
    ASSERT_HRESULT_SUCCEEDED(fresh->CalComputeLUT(65536, 1, 65535, tables_.CountsName(),
                                                  tables_.TemperatureName(), &ok));
    EXPECT_FALSE(ok);
}

// ---- Requests refused with a zero success flag, leaving the object usable ----

struct Request {
    std::string name;
    bool loadFirst;
    std::function<HRESULT(IOsCalibration*, const SharedTables&, BOOL*)> call;
};

void PrintTo(const Request& request, std::ostream* out) {
    *out << request.name;
}

class SimulatorCalibrationRefusals : public SimulatorCalibration,
                                     public ::testing::WithParamInterface<Request> {};

TEST_P(SimulatorCalibrationRefusals, ReportNotOkAndKeepTheObjectUsable) {
    if (GetParam().loadFirst) {
        ASSERT_TRUE(LoadFactoryRecord(calibration_.Get(), factory_));
    }
    BOOL ok = TRUE;
    EXPECT_EQ(GetParam().call(calibration_.Get(), tables_, &ok), S_OK);
    EXPECT_FALSE(ok);
    if (GetParam().loadFirst) {
        EXPECT_TRUE(ComputeLut(calibration_.Get(), tables_));
    }
}

HRESULT Table(IOsCalibration* c, ULONG entries, ULONG step, ULONG largest, BSTR counts,
              BSTR temperatures, BOOL* ok) {
    return c->CalComputeLUT(entries, step, largest, counts, temperatures, ok);
}

INSTANTIATE_TEST_SUITE_P(
    , SimulatorCalibrationRefusals,
    ::testing::Values(
        Request{"TableBeforeCalibration", false,
                [](auto c, auto& t, BOOL* ok) {
                    return Table(c, 65536, 1, 65535, t.CountsName(), t.TemperatureName(), ok);
                }},
        Request{"TableWithoutMappings", true,
                [](auto c, auto&, BOOL* ok) { return Table(c, 65536, 1, 65535, 0, 0, ok); }},
        Request{"TableIntoSmallMappings", true,
                [](auto c, auto&, BOOL* ok) {
                    const SharedTables small(1024);
                    return Table(c, 65536, 1, 65535, small.CountsName(), small.TemperatureName(),
                                 ok);
                }},
        Request{"TableWithStride", true,
                [](auto c, auto& t, BOOL* ok) {
                    return Table(c, 65536, 2, 65535, t.CountsName(), t.TemperatureName(), ok);
                }},
        Request{"TableWithCountsAboveLargest", true,
                [](auto c, auto& t, BOOL* ok) {
                    return Table(c, 65536, 1, 1000, t.CountsName(), t.TemperatureName(), ok);
                }},
        Request{"CountsBelowAbsoluteZero", true,
                [](auto c, auto&, BOOL* ok) {
                    unsigned short counts = 0;
                    return c->CalTempToCounts(-300.0f, &counts, ok);
                }},
        Request{"OtherKindThroughKind2Slot", true,
                [](auto c, auto&, BOOL* ok) {
                    return c->CalLoadFactoryKind2(1, 1e6f, 1430, 1, 0, 1000, 0, 60000, 1000, 420,
                                                  250, ok);
                }},
        Request{"FactoryWithoutSignal", true,
                [](auto c, auto&, BOOL* ok) {
                    return c->CalLoadFactory(1, 0, 1430, 1, 0, 1000, 0, 60000, 1000, 420, 250, 4,
                                             ok);
                }},
        Request{"ObjectParamsInUnknownMode", true,
                [](auto c, auto&, BOOL* ok) { return c->CalSetObjectParams(1, 20, 1, 20, 0, ok); }},
        Request{"IntegrationTimeInUnknownMode", true,
                [](auto c, auto&, BOOL* ok) {
                    float time = 0;
                    return c->CalIntegrationTimeAt(300, 20000, &time, 2, ok);
                }}),
    [](const auto& info) { return info.param.name; });

} // namespace
