#include "record_files.h"

#include <charconv>
#include <cstdint>
#include <fstream>
#include <map>
#include <set>
#include <variant>

#include "display_name.h"

namespace formats {
namespace {

// Where a named value goes in the record being read.
using Field = std::variant<std::uint32_t*, float*>;

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool Parse(const std::string& text, std::uint32_t* target) {
    const auto end = text.data() + text.size();
    const auto [rest, status] = std::from_chars(text.data(), end, *target);
    return status == std::errc() && rest == end;
}

bool Parse(const std::string& text, float* target) {
    const auto end = text.data() + text.size();
    const auto [rest, status] = std::from_chars(text.data(), end, *target);
    return status == std::errc() && rest == end;
}

bool ReadFields(const std::filesystem::path& file, const std::map<std::string, Field>& fields,
                std::string& error) {
    std::ifstream in(file);
    if (!in) {
        error = DisplayName(file) + ": can't be read";
        return false;
    }
    std::set<std::string> seen;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::string where = DisplayName(file) + ":" + std::to_string(number) + ": ";
        line = Trim(line.substr(0, line.find('#')));
        if (line.empty()) {
            continue;
        }
        const auto equals = line.find('=');
        if (equals == std::string::npos) {
            error = where + "expected \"name = value\"";
            return false;
        }
        const std::string name = Trim(line.substr(0, equals));
        const std::string value = Trim(line.substr(equals + 1));
        const auto field = fields.find(name);
        if (field == fields.end()) {
            error = where + "unknown field \"" + name + "\"";
            return false;
        }
        if (!seen.insert(name).second) {
            error = where + "\"" + name + "\" is given twice";
            return false;
        }
        if (!std::visit([&](auto* target) { return Parse(value, target); }, field->second)) {
            error = where + "\"" + value + "\" is not a valid value for " + name;
            return false;
        }
    }
    if (in.bad()) {
        error = DisplayName(file) + ": read error";
        return false;
    }
    return true;
}

} // namespace

bool ReadFactoryCal(const std::filesystem::path& file,
                    vz::reduce::CQuilloFactoryCalReduceObject& record, std::string& error) {
    vz::reduce::CQuilloFactoryCalReduceObject read = record;
    std::map<std::string, Field> fields{
        {"calKind", &read.calKind},     {"calCoefExtra", &read.calCoefExtra},
        {"countsLow", &read.countsLow}, {"countsHigh", &read.countsHigh},
        {"tempMinK", &read.tempMinK},   {"tempMaxK", &read.tempMaxK},
        {"calAux", &read.calAux},       {"integrationTime", &read.integrationTime}};
    for (int i = 0; i < 6; ++i) {
        fields.emplace("calCoef" + std::to_string(i), &read.calCoef[i]);
    }
    if (!ReadFields(file, fields, error)) {
        return false;
    }
    record = read;
    return true;
}

bool ReadObjectParams(const std::filesystem::path& file,
                      vz::reduce::CObjectParametersReduceObject& record, std::string& error) {
    vz::reduce::CObjectParametersReduceObject read = record;
    const std::map<std::string, Field> fields{{"objFactorA", &read.objFactorA},
                                              {"objTempA", &read.objTempA},
                                              {"objTempB", &read.objTempB},
                                              {"objFactorB", &read.objFactorB}};
    if (!ReadFields(file, fields, error)) {
        return false;
    }
    record = read;
    return true;
}

} // namespace formats
