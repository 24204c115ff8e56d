// Talking to camsim.exe the way the library does: objects created out of process, records
// loaded in the engine's call order, tables computed through named mappings.
#pragma once

#include <ostrel_server.h>

#include <map>
#include <optional>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include "unique_resources.h"

using camsim::ComRef;

// A sample record of simulator/samples (copied beside the test program): field name to value,
// as the file's "name = value" lines give them.
using SampleRecord = std::map<std::string, double>;

// Empty when the file is missing or a line is malformed.
std::optional<SampleRecord> ReadSample(const wchar_t* fileName);

// Every test runs in its own single-threaded apartment, as the library's callers do.
class ServerTest : public ::testing::Test {
protected:
    ServerTest() : apartment_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~ServerTest() override {
        if (SUCCEEDED(apartment_)) {
            CoUninitialize();
        }
    }
    void SetUp() override { ASSERT_HRESULT_SUCCEEDED(apartment_); }

private:
    HRESULT apartment_;
};

ComRef<IOstrelHost> CreateHost();
ComRef<IOsCalibration> CreateCalibration();
ULONG ServerProcessId(IOsCalibration* calibration);

// The factory record through CalLoadFactory (the sample's kind is not 2), then integration
// time (truncated) and auxiliary value.
::testing::AssertionResult LoadFactoryRecord(IOsCalibration* calibration,
                                             const SampleRecord& record);
// Kelvin sent as Celsius and zero factors as 1, as the engine sends them.
::testing::AssertionResult SendObjectRecord(IOsCalibration* calibration,
                                            const SampleRecord& record);

// Named mappings shaped like the engine's shared buffers, under names unique to this process;
// the counts table holds i at index i.
class SharedTables {
public:
    static constexpr std::size_t kEntries = 65536;

    SharedTables();

    bool Valid() const { return countsName_ && temperatureName_; }
    BSTR CountsName() const { return countsName_.Get(); }
    BSTR TemperatureName() const { return temperatureName_.Get(); }
    std::span<const float> Temperatures() const;

private:
    camsim::UniqueHandle countsMapping_, temperatureMapping_;
    camsim::UniqueMappedView countsView_, temperatureView_;
    camsim::UniqueBstr countsName_, temperatureName_;
};

// CalComputeLUT(65536, 1, 65535, ...) as the engine calls it.
::testing::AssertionResult ComputeLut(IOsCalibration* calibration, const SharedTables& tables);
