// Behaviour of the families beyond the element rules: refresh, routing, invalid codes, in place.
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "kernel_calls.h"

namespace vz::testing {
namespace {

using Presets = std::vector<unsigned char>;

// Preset p holds 1000 p + i / 4 at count i, and status byte p + 1.
MemoryEngine NumberedEngine() {
    MemoryEngine engine;
    for (unsigned p = 0; p < kPresetCount; ++p) {
        for (unsigned i = 0; i < kLutSize; ++i) {
            engine.values[p][i] = 1000.0f * static_cast<float>(p) + static_cast<float>(i) / 4;
            engine.status[p][i] = static_cast<unsigned char>(p + 1);
        }
    }
    return engine;
}

TEST(Dispatch, InvalidCodesTouchNothing) {
    const std::pair<ApiUInt32, ApiUInt32> codes[] = {
        {10, Float}, {Float, 10}, {0xFFFFFFFFu, Float}, {Float, 0xFFFFFFFFu}, {10, 0xFFFFFFFFu}};
    for (Family family : {Family::Uniform, Family::PerPixel, Family::Keyed}) {
        for (auto [inCode, outCode] : codes) {
            MemoryEngine engine;
            float in[2] = {1, 2};
            std::vector<float> out(2, -1.0f);
            Presets status(2, 9);
            EXPECT_FALSE(Convert(engine, MixedRouting(family, 2), {in, inCode},
                                 {out.data(), outCode}, 2, status.data(), eCelsius));
            EXPECT_EQ(out, std::vector<float>(2, -1.0f));
            EXPECT_EQ(status, Presets(2, 9));
            EXPECT_TRUE(engine.refreshes.empty());
        }
    }
}

// n = 0 writes nothing but still refreshes: the uniform kernel its preset, the others the active.
TEST(Dispatch, ZeroPixelsStillRefresh) {
    for (Family family : {Family::Uniform, Family::PerPixel, Family::Keyed}) {
        MemoryEngine engine;
        engine.active = {true, false, true, false};
        float pixel = -1.0f;
        EXPECT_TRUE(Convert(engine, MixedRouting(family, 0), {&pixel, Float}, {&pixel, Float}, 0,
                            nullptr, eFahrenheit));
        EXPECT_EQ(engine.refreshes, (family == Family::Uniform ? Presets{2} : Presets{0, 2}));
        EXPECT_EQ(pixel, -1.0f);
    }
}

TEST(RefreshActiveLUTs, StopsAtTheFirstFailureKeepingEarlierRebuilds) {
    for (Family family : {Family::PerPixel, Family::Keyed}) {
        MemoryEngine engine;
        engine.failingPreset = 2;
        std::uint16_t in[3] = {1, 2, 3};
        std::vector<float> out(3, -1.0f);
        EXPECT_FALSE(Convert(engine, MixedRouting(family, 3), {in, UInt16}, {out.data(), Float}, 3,
                             nullptr, eCelsius));
        EXPECT_EQ(engine.refreshes, (Presets{0, 1, 2}));
        EXPECT_EQ(engine.dirty, (std::array<bool, kPresetCount>{false, false, true, true}));
        EXPECT_EQ(out, std::vector<float>(3, -1.0f));
    }
}

// Pixels naming inactive presets read those tables as they stand; keys index the caller's table
// as unsigned numbers, up to its last entry.
TEST(RefreshActiveLUTs, OnlyActivePresetsAreRefreshed) {
    for (Family family : {Family::PerPixel, Family::Keyed}) {
        MemoryEngine engine = NumberedEngine();
        engine.active = {false, true, false, true};
        Routing routing = MixedRouting(family, 4);
        routing.presetMap = {0, 1, 2, 3};
        routing.pixelKeys = {1000, 1, 2, 0};
        routing.keyToPreset[1000] = 0;
        routing.keyToPreset[1] = 1;
        routing.keyToPreset[2] = 2;
        routing.keyToPreset[0] = 3;
        std::int32_t in[4] = {8, 8, 8, 8};
        std::vector<float> out(4);
        Presets status(4);
        ASSERT_TRUE(
            Convert(engine, routing, {in, Int32}, {out.data(), Float}, 4, status.data(), eCelsius));
        EXPECT_EQ(engine.refreshes, (Presets{1, 3}));
        EXPECT_EQ(out, (std::vector<float>{2, 1002, 2002, 3002}));
        EXPECT_EQ(status, (Presets{1, 2, 3, 4}));
    }
}

TEST(UniformKernel, ConvertsFloatBufferInPlace) {
    MemoryEngine engine = NumberedEngine();
    const Routing routing = UniformRouting(1);
    std::vector<float> pixels = {0.5f, 12.7f, 70000.0f, std::nanf(""), 3.0f, 100.2f};
    ASSERT_TRUE(Convert(engine, routing, {pixels.data(), Float}, {pixels.data(), Float}, 6, nullptr,
                        eCelsius));
    EXPECT_EQ(pixels, (std::vector<float>{1000, 1003, 1000 + 65535 / 4.0f, 1000, 1000.75f, 1025}));
}

} // namespace
} // namespace vz::testing
