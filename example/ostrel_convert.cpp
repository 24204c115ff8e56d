// ostrel-convert: the example host. It loads a factory calibration and object parameters into a
// calibration engine, has the camera server build the preset's temperature table, and prints a
// few count-to-temperature pairs and how the table's entries are marked.
#include <ostrel.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

#include "record_files.h"

namespace {

// The sample records: beside the program in the build tree, under share/ in the SDK.
std::filesystem::path SamplesFolder() {
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    const std::filesystem::path bin = std::filesystem::path(exe).parent_path();
    const std::filesystem::path beside = bin / "samples";
    return std::filesystem::exists(beside) ? beside : bin.parent_path() / "share/ostrel/samples";
}

int Fail(const std::string& message) {
    std::fprintf(stderr, "ostrel-convert: %s\n", message.c_str());
    return 1;
}

} // namespace

int main() {
    const std::filesystem::path samples = SamplesFolder();
    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
    std::string error;
    if (!records::ReadFactoryCal(samples / "factory_cal.txt", record, error) ||
        !records::ReadObjectParams(samples / "object_params.txt", params, error)) {
        return Fail(error);
    }

    vz::CBroadCal engine;
    if (!engine.isAvailable()) {
        return Fail("the camera server's calibration service is not available (is it registered?)");
    }
    const unsigned char preset = 0;
    if (!engine.SetBroadCal(preset, &record) || !engine.SetObjectParams(&params)) {
        return Fail("the camera server refused the calibration");
    }
    const float* temps = engine.GetLUTOutput(preset);
    const unsigned char* status = engine.GetLUTStatus(preset);
    if (temps == nullptr || status == nullptr) {
        return Fail("the camera server could not build the temperature table");
    }

    std::printf("Preset %u, calibrated from %u to %u counts:\n", preset, record.countsLow,
                record.countsHigh);
    std::puts("   counts   temperature (C)  status");
    for (unsigned counts : {0u, record.countsLow, 16384u, 32768u, 49152u, record.countsHigh, 65535u}) {
        std::printf("  %7u  %16.3f  %6u\n", counts, temps[counts], status[counts]);
    }

    std::array<unsigned, 5> histogram{};
    for (unsigned i = 0; i < vz::kLutSize; ++i) {
        ++histogram[status[i]];
    }
    std::puts("Table entries by status:");
    std::printf("  inside the calibrated range  %6u\n", histogram[vz::eLUTValid]);
    std::printf("  outside, within the margin   %6u\n", histogram[vz::eLUTOutside]);
    std::printf("  below the low margin         %6u\n", histogram[vz::eLUTBelow]);
    std::printf("  above the high margin        %6u\n", histogram[vz::eLUTAbove]);
    return 0;
}
