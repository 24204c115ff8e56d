// Expected results written from the rules' definitions, independently of the code under test:
// plain arithmetic and range checks instead of the processor's conversions.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace vz::testing {

inline std::uint32_t Bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}
inline std::uint64_t Bits(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

// A double that the compiler must store as it is before using it again.
inline double Kept(double value) {
    const volatile double kept = value;
    return kept;
}

// Each cell as its formula, every intermediate Kept, so that nothing can be fused.
inline float ReferenceConvert(float value, int from, int to) {
    if (from == to || from < 0 || from > 3 || to < 0 || to > 3) {
        return value;
    }
    using Cell = double (*)(double);
    static constexpr Cell kCells[4][4] = {
        {nullptr, [](double x) { return Kept(x * 1.8) + 32.0; },
         [](double x) { return x + 273.15; }, [](double x) { return Kept(x + 273.15) * 1.8; }},
        {[](double x) { return Kept(x - 32.0) / 1.8; }, nullptr,
         [](double x) { return Kept(x + 459.67) / 1.8; }, [](double x) { return x + 459.67; }},
        {[](double x) { return x - 273.15; }, [](double x) { return Kept(x * 1.8) - 459.67; },
         nullptr, [](double x) { return x * 1.8; }},
        {[](double x) { return Kept(x / 1.8) - 273.15; }, [](double x) { return x - 459.67; },
         [](double x) { return x / 1.8; }, nullptr}};
    return static_cast<float>(kCells[from][to](value));
}

template <class In> std::uint16_t ReferenceIndex(In x) {
    if (!(x > 0)) { // NaN too
        return 0;
    }
    if (x >= 65535) {
        return 65535;
    }
    return static_cast<std::uint16_t>(x); // in range: the cast truncates
}

// Truncation toward zero into a signed integer of Width bits; NaN and overflow give the integer
// indefinite value (only the sign bit set).
template <int Width> std::int64_t ReferenceTruncate(float t) {
    const double limit = std::ldexp(1.0, Width - 1);
    const double whole = std::trunc(static_cast<double>(t));
    if (!(whole >= -limit && whole < limit)) {
        return std::numeric_limits<std::int64_t>::min() >> (64 - Width);
    }
    return static_cast<std::int64_t>(whole);
}

template <class Out> Out ReferenceStore(float t) {
    if constexpr (std::is_floating_point_v<Out>) {
        return static_cast<Out>(t);
    } else if constexpr (std::is_same_v<Out, std::uint64_t>) {
        // Up to 2^64 the value itself; beyond it the indefinite value.
        if (t >= 0x1p63f && t < 0x1p64f) {
            return static_cast<std::uint64_t>(t);
        }
        return static_cast<std::uint64_t>(ReferenceTruncate<64>(t));
    } else if constexpr (std::is_signed_v<Out> && sizeof(Out) <= 4) {
        return static_cast<Out>(ReferenceTruncate<32>(t));
    } else {
        return static_cast<Out>(ReferenceTruncate<64>(t));
    }
}

} // namespace vz::testing
