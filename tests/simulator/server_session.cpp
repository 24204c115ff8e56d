#include "server_session.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    return first == std::string::npos
               ? std::string()
               : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

::testing::AssertionResult Checked(const char* call, HRESULT hr, BOOL ok) {
    if (FAILED(hr) || !ok) {
        return ::testing::AssertionFailure() << call << ": HRESULT 0x" << std::hex
                                             << static_cast<unsigned long>(hr) << ", ok " << ok;
    }
    return ::testing::AssertionSuccess();
}

float Field(const SampleRecord& record, const std::string& name) {
    return static_cast<float>(record.at(name));
}

ULONG Count(const SampleRecord& record, const std::string& name) {
    return static_cast<ULONG>(record.at(name));
}

} // namespace

std::optional<SampleRecord> ReadSample(const wchar_t* fileName) {
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::ifstream input(std::filesystem::path(program).parent_path() / "samples" / fileName);
    if (!input) {
        return std::nullopt;
    }
    SampleRecord record;
    for (std::string line; std::getline(input, line);) {
        line = Trim(line.substr(0, line.find('#')));
        const auto equals = line.find('=');
        if (line.empty()) {
            continue;
        }
        const std::string value = equals == std::string::npos ? "" : Trim(line.substr(equals + 1));
        char* end = nullptr;
        record[Trim(line.substr(0, equals))] = std::strtod(value.c_str(), &end);
        if (value.empty() || *end != '\0') {
            return std::nullopt;
        }
    }
    return record;
}

ComRef<IOstrelHost> CreateHost() {
    ComRef<IOstrelHost> host;
    CoCreateInstance(CLSID_OstrelHost, nullptr, CLSCTX_LOCAL_SERVER, IID_IOstrelHost,
                     host.PutVoid());
    return host;
}

ComRef<IOsCalibration> CreateCalibration() {
    ComRef<IOsCalibration> calibration;
    CoCreateInstance(CLSID_OsCalibration, nullptr, CLSCTX_LOCAL_SERVER, IID_IOsCalibration,
                     calibration.PutVoid());
    return calibration;
}

ULONG ServerProcessId(IOsCalibration* calibration) {
    ULONG pid = 0;
    EXPECT_HRESULT_SUCCEEDED(calibration->SimProcessId(&pid));
    return pid;
}

::testing::AssertionResult LoadFactoryRecord(IOsCalibration* c, const SampleRecord& r) {
    float k[6];
    for (int i = 0; i < 6; ++i) {
        k[i] = Field(r, "calCoef" + std::to_string(i));
    }
    BOOL ok = FALSE;
    HRESULT hr =
        c->CalLoadFactory(Count(r, "calKind"), k[0], k[1], k[2], k[3], k[4], k[5],
                          Count(r, "countsHigh"), Count(r, "countsLow"), Field(r, "tempMaxK"),
                          Field(r, "tempMinK"), Field(r, "calCoefExtra"), &ok);
    if (auto result = Checked("factory load", hr, ok); !result) {
        return result;
    }
    hr = c->CalSetIntegrationTime(static_cast<LONG>(Field(r, "integrationTime")), &ok);
    if (auto result = Checked("CalSetIntegrationTime", hr, ok); !result) {
        return result;
    }
    return Checked("CalSetAux", c->CalSetAux(Field(r, "calAux"), &ok), ok);
}

::testing::AssertionResult SendObjectRecord(IOsCalibration* c, const SampleRecord& r) {
    const auto factor = [&](const char* name) {
        return Field(r, name) == 0.0f ? 1.0f : Field(r, name);
    };
    const auto celsius = [&](const char* name) {
        return static_cast<float>(static_cast<double>(Field(r, name)) - 273.15);
    };
    BOOL ok = FALSE;
    const HRESULT hr = c->CalSetObjectParams(factor("objFactorA"), celsius("objTempA"),
                                             factor("objFactorB"), celsius("objTempB"), 1, &ok);
    return Checked("CalSetObjectParams", hr, ok);
}

SharedTables::SharedTables() {
    static std::atomic<unsigned> serial{0};
    const std::wstring suffix =
        std::to_wstring(GetCurrentProcessId()) + L"." + std::to_wstring(++serial);
    const std::wstring countsName = L"CamSimTest Counts " + suffix;
    const std::wstring temperatureName = L"CamSimTest Temperatures " + suffix;
    countsMapping_.Reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                            static_cast<DWORD>(kEntries * sizeof(std::uint16_t)),
                                            countsName.c_str()));
    temperatureMapping_.Reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                 static_cast<DWORD>(kEntries * sizeof(float)),
                                                 temperatureName.c_str()));
    if (!countsMapping_ || !temperatureMapping_) {
        return;
    }
    countsView_.Reset(MapViewOfFile(countsMapping_.Get(), FILE_MAP_WRITE, 0, 0, 0));
    temperatureView_.Reset(MapViewOfFile(temperatureMapping_.Get(), FILE_MAP_WRITE, 0, 0, 0));
    if (!countsView_ || !temperatureView_) {
        return;
    }
    auto* counts = static_cast<std::uint16_t*>(countsView_.Get());
    for (std::size_t i = 0; i < kEntries; ++i) {
        counts[i] = static_cast<std::uint16_t>(i);
    }
    countsName_.Reset(SysAllocString(countsName.c_str()));
    temperatureName_.Reset(SysAllocString(temperatureName.c_str()));
}

std::span<const float> SharedTables::Temperatures() const {
    return {static_cast<const float*>(temperatureView_.Get()), kEntries};
}

::testing::AssertionResult ComputeLut(IOsCalibration* calibration, const SharedTables& tables) {
    BOOL ok = FALSE;
    const HRESULT hr = calibration->CalComputeLUT(65536, 1, 65535, tables.CountsName(),
                                                  tables.TemperatureName(), &ok);
    return Checked("CalComputeLUT", hr, ok);
}
