#include "sample_file.h"

#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    return first == std::string::npos
               ? std::string()
               : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
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
