#include <windows.h>

#include "record_files.h"

namespace formats {

std::filesystem::path SamplesFolder() {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::filesystem::path bin = std::filesystem::path(program).parent_path();
    const std::filesystem::path beside = bin / "samples";
    return std::filesystem::exists(beside) ? beside : bin.parent_path() / "share/ostrel/samples";
}

} // namespace formats
