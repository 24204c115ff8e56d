#include "server_version.h"

namespace camsim {

namespace {

// Consumes one decimal number of at most 32 bits from the front of `text`.
std::optional<std::uint32_t> TakeNumber(std::wstring_view& text) {
    std::uint64_t value = 0;
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= L'0' && text[digits] <= L'9') {
        value = value * 10 + static_cast<std::uint64_t>(text[digits] - L'0');
        if (value > UINT32_MAX) {
            return std::nullopt;
        }
        ++digits;
    }
    if (digits == 0) {
        return std::nullopt;
    }
    text.remove_prefix(digits);
    return static_cast<std::uint32_t>(value);
}

bool TakeDot(std::wstring_view& text) {
    if (text.empty() || text.front() != L'.') {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

} // namespace

std::optional<ServerVersion> ParseServerVersion(std::wstring_view text) {
    const auto major = TakeNumber(text);
    if (!major || !TakeDot(text)) {
        return std::nullopt;
    }
    const auto minor = TakeNumber(text);
    if (!minor || !TakeDot(text)) {
        return std::nullopt;
    }
    const auto build = TakeNumber(text);
    if (!build || !text.empty()) {
        return std::nullopt;
    }
    return ServerVersion{*major, *minor, *build};
}

} // namespace camsim
