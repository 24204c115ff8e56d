// The version the simulated server reports, and how it is written in its registry setting.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace camsim {

struct ServerVersion {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;

    friend bool operator==(const ServerVersion&, const ServerVersion&) = default;
};

// Reported when the setting is absent or malformed.
inline constexpr ServerVersion kDefaultServerVersion{5, 92, 0};

// "major.minor.build": three decimal numbers of at most 32 bits, nothing else.
std::optional<ServerVersion> ParseServerVersion(std::wstring_view text);

} // namespace camsim
