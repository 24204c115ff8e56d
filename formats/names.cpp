#include "names.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace formats {
namespace {

struct UnitName {
    vz::ETempType unit;
    const char* symbol;
    const char* name;
};

constexpr std::array<UnitName, 4> kUnits{{{vz::eCelsius, "C", "Celsius"},
                                          {vz::eFahrenheit, "F", "Fahrenheit"},
                                          {vz::eKelvin, "K", "Kelvin"},
                                          {vz::eRankine, "R", "Rankine"}}};

struct TypeName {
    vz::EDataType type;
    const char* name;
    std::size_t size;
};

constexpr std::array<TypeName, 10> kTypes{{{vz::Int8, "Int8", 1},
                                           {vz::UInt8, "UInt8", 1},
                                           {vz::Int16, "Int16", 2},
                                           {vz::UInt16, "UInt16", 2},
                                           {vz::Int32, "Int32", 4},
                                           {vz::UInt32, "UInt32", 4},
                                           {vz::Int64, "Int64", 8},
                                           {vz::UInt64, "UInt64", 8},
                                           {vz::Float, "Float", 4},
                                           {vz::Double, "Double", 8}}};

bool SameIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) ==
               std::tolower(static_cast<unsigned char>(y));
    });
}

} // namespace

std::optional<vz::ETempType> ParseUnit(std::string_view name) {
    for (const UnitName& entry : kUnits) {
        if (SameIgnoringCase(name, entry.symbol) || SameIgnoringCase(name, entry.name)) {
            return entry.unit;
        }
    }
    return std::nullopt;
}

const char* UnitSymbol(vz::ETempType unit) {
    return kUnits.at(unit).symbol;
}

std::optional<vz::EDataType> ParseElementType(std::string_view name) {
    for (const TypeName& entry : kTypes) {
        if (SameIgnoringCase(name, entry.name)) {
            return entry.type;
        }
    }
    return std::nullopt;
}

const char* ElementTypeName(vz::EDataType type) {
    return kTypes.at(type).name;
}

std::size_t ElementSize(vz::EDataType type) {
    return kTypes.at(type).size;
}

} // namespace formats
