// Every (input, output) pair of every family, against the element rules' reference model.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "kernel_calls.h"
#include "reference_rules.h"

namespace vz::testing {
namespace {

constexpr unsigned char kUntouched = 0xA5;

// Sixteen counts whose temperatures are ordinary, a whole group of every set (4, 8 or 16 lanes),
// then inputs at each type's clamp boundaries; 16k + 3 in all, so that a remainder follows.
template <class In> std::vector<In> SampleInputs() {
    using Limits = std::numeric_limits<In>;
    std::vector<In> samples;
    for (int count = 20; count < 36; ++count) {
        samples.push_back(static_cast<In>(count));
    }
    samples.push_back(Limits::max());
    samples.push_back(Limits::lowest());
    for (long long v : {0, 1, 5, 12, 100, -3, 127, 255, 300, 32767, 65534, 65535, 70000}) {
        if constexpr (std::is_floating_point_v<In>) {
            samples.push_back(static_cast<In>(v));
        } else if (std::in_range<In>(v)) {
            samples.push_back(static_cast<In>(v));
        }
    }
    if constexpr (std::is_floating_point_v<In>) {
        for (In v : {In(-0.0), In(0.9), In(12.7), In(65534.99), Limits::infinity(),
                     -Limits::infinity(), std::ldexp(In(1), 40), Limits::quiet_NaN()}) {
            samples.push_back(v);
        }
    }
    while (samples.size() % 16 != 3) {
        samples.push_back(samples[samples.size() % 5]);
    }
    return samples;
}

// Ordinary temperatures, and at the counts the samples reach, values that stress the output
// rules; each preset holds them at different counts.
void FillTables(MemoryEngine& engine) {
    const float specials[] = {-5.5f,    300.7f,  3e9f,
                              70000.9f, -1.5f,   std::nanf(""),
                              0x1p63f,  1.4e19f, std::numeric_limits<float>::infinity(),
                              -3e9f,    2.5e19f};
    const unsigned reached[] = {0, 1, 5, 12, 100, 127, 255, 300, 32767, 65534, 65535};
    for (unsigned p = 0; p < kPresetCount; ++p) {
        for (unsigned i = 0; i < kLutSize; ++i) {
            engine.values[p][i] = static_cast<float>(i) * 0.37f - 50.0f + static_cast<float>(p);
            engine.status[p][i] = static_cast<unsigned char>(i * 31 + p * 17 + 1);
        }
        for (std::size_t j = 0; j < std::size(reached); ++j) {
            engine.values[p][reached[j]] = specials[(j + p) % std::size(specials)];
        }
    }
}

template <class T> bool AllBytesUntouched(const T* data, std::size_t count) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    return std::all_of(bytes, bytes + count * sizeof(T), [](auto b) { return b == kUntouched; });
}

template <class In, class Out>
void ExpectPairFollowsTheRules(Family family, ApiUInt32 inCode, ApiUInt32 outCode) {
    MemoryEngine engine;
    FillTables(engine);
    std::vector<In> in = SampleInputs<In>();
    const auto n = static_cast<ApiUInt32>(in.size());
    const Routing routing = MixedRouting(family, n);
    std::vector<Out> out(n + 2);
    std::vector<unsigned char> status(n + 2);
    const auto clear = [&] {
        std::memset(out.data(), kUntouched, out.size() * sizeof(Out));
        std::memset(status.data(), kUntouched, status.size());
    };
    const auto convert = [&](ApiUInt32 count, unsigned char* marks, ETempType type) {
        return Convert(engine, routing, {in.data(), inCode}, {out.data(), outCode}, count, marks,
                       type);
    };

    // Same unit; a scaling conversion with a shift and a dividing one with an offset; an unknown
    // unit, which converts nothing.
    const std::pair<ETempType, ETempType> units[] = {{eCelsius, eCelsius},
                                                     {eCelsius, eFahrenheit},
                                                     {eFahrenheit, eCelsius},
                                                     {eKelvin, ETempType{7}}};
    for (auto [lutUnit, type] : units) {
        engine.unit = lutUnit;
        for (bool withStatus : {false, true}) {
            SCOPED_TRACE(::testing::Message() << lutUnit << " to " << type << " " << withStatus);
            clear();
            ASSERT_TRUE(convert(n, withStatus ? status.data() : nullptr, type));
            for (ApiUInt32 k = 0; k < n; ++k) {
                const unsigned char p = routing.PresetOf(k);
                const std::uint16_t i = ReferenceIndex(in[k]);
                const Out expected =
                    ReferenceStore<Out>(ReferenceConvert(engine.values[p][i], lutUnit, type));
                EXPECT_EQ(std::memcmp(&out[k], &expected, sizeof(Out)), 0) << "pixel " << k;
                EXPECT_EQ(status[k], withStatus ? engine.status[p][i] : kUntouched);
            }
            EXPECT_TRUE(AllBytesUntouched(out.data() + n, 2));
            EXPECT_TRUE(AllBytesUntouched(status.data() + n, 2));
        }
    }

    engine.failingPreset = family == Family::Uniform ? routing.preset : 3;
    clear();
    for (ApiUInt32 count : {n, ApiUInt32{0}}) {
        EXPECT_FALSE(convert(count, status.data(), eFahrenheit));
        EXPECT_FALSE(convert(count, status.data(), eCelsius));
    }
    EXPECT_TRUE(AllBytesUntouched(out.data(), out.size()));
    EXPECT_TRUE(AllBytesUntouched(status.data(), status.size()));
}

using PairCase = std::tuple<Family, unsigned, unsigned>;

class KernelPair : public ::testing::TestWithParam<PairCase> {};

TEST_P(KernelPair, FollowsTheElementRulesOnEveryPath) {
    // Not a structured binding: lambdas may capture those only from C++20 on, and clang 14
    // doesn't yet.
    const Family family = std::get<0>(GetParam());
    const unsigned inCode = std::get<1>(GetParam());
    const unsigned outCode = std::get<2>(GetParam());
    WithElementType(inCode, [&](auto in) {
        WithElementType(outCode, [&](auto out) {
            ExpectPairFollowsTheRules<decltype(in), decltype(out)>(family, inCode, outCode);
        });
    });
}

std::string PairName(const ::testing::TestParamInfo<PairCase>& info) {
    const auto [family, inCode, outCode] = info.param;
    return std::string(kFamilyNames[static_cast<int>(family)]) + "_" + kElementTypeNames[inCode] +
           "_" + kElementTypeNames[outCode];
}

INSTANTIATE_TEST_SUITE_P(AllPairs, KernelPair,
                         ::testing::Combine(::testing::Values(Family::Uniform, Family::PerPixel,
                                                              Family::Keyed),
                                            ::testing::Range(0u, 10u), ::testing::Range(0u, 10u)),
                         PairName);

} // namespace
} // namespace vz::testing
