// Paths and arguments in messages: never throws, whatever characters a name holds.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace formats {

#ifdef _WIN32
// In UTF-8; a lone surrogate, which UTF-8 can't hold, shows as U+FFFD.
std::string Narrow(std::wstring_view text);
inline std::string DisplayName(const std::filesystem::path& path) {
    return Narrow(path.native());
}
#else
// Native paths are bytes already (the fuzz targets' files).
inline std::string DisplayName(const std::filesystem::path& path) {
    return path.native();
}
#endif

} // namespace formats
