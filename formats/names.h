// The names the command line uses for temperature units and element types.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include <ostrel_types.h>

namespace formats {

// "C", "F", "K", "R" or the full names, in any case.
std::optional<vz::ETempType> ParseUnit(std::string_view name);
// The one-letter symbol, as the labels and the summary show it.
const char* UnitSymbol(vz::ETempType unit);

// "Int8" .. "Double" as vz::EDataType spells them, in any case.
std::optional<vz::EDataType> ParseElementType(std::string_view name);
const char* ElementTypeName(vz::EDataType type);
std::size_t ElementSize(vz::EDataType type);

} // namespace formats
