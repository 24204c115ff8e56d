#include "engine_fixture.h"

#include <unique_resource.h>

namespace engine_test {

void WriteTable(const std::wstring& mappingName, const std::function<float(int)>& value) {
    const owners::UniqueHandle mapping(
        OpenFileMappingW(FILE_MAP_WRITE, FALSE, mappingName.c_str()));
    ASSERT_TRUE(mapping) << "no mapping named the engine's temperature buffer";
    const owners::UniqueView<float> table(
        static_cast<float*>(MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, 0)));
    ASSERT_TRUE(table);
    for (int i = 0; i < 65536; ++i) {
        table.get()[i] = value(i);
    }
}

vz::reduce::CQuilloFactoryCalReduceObject SampleRecord(unsigned kind) {
    vz::reduce::CQuilloFactoryCalReduceObject record;
    record.calKind = kind;
    for (int i = 0; i < 6; ++i) {
        record.calCoef[i] = 1.5f + i;
    }
    record.calCoefExtra = 0.25f;
    record.countsLow = 1000;
    record.countsHigh = 60000;
    record.tempMinK = 253.15f;
    record.tempMaxK = 423.15f;
    record.calAux = 0.75f;
    record.integrationTime = 123.9f;
    return record;
}

void EngineTest::SetUp() {
    // S_FALSE: an earlier test's failed creation left the library's apartment entered, as it
    // should; the library leaves it with its next dropped reference.
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    server = std::make_unique<fake::FakeCalibrationServer>();
    engine = std::make_unique<vz::CBroadCal>();
}

void EngineTest::TearDown() {
    engine.reset();
    if (server) {
        for (const auto& object : server->Objects()) {
            EXPECT_EQ(0u, object->References()) << "the engine kept a calibration object";
        }
        server.reset();
    }
    CoUninitialize();
}

void EngineTest::ServeTable(std::function<float(int)> value) {
    Log().computeLut = [value](const std::wstring&, const std::wstring& temps) {
        WriteTable(temps, value);
    };
}

} // namespace engine_test
