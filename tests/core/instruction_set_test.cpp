// The kernel variant the environment forces is the one the dispatchers use, where the processor
// and the system have its set; these tests run once per variant, and once unforced. Detection
// itself agrees with the compiler's.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include "kernel_set.h"

namespace vz::testing {
namespace {

using typed::InstructionSet;

TEST(InstructionSet, TheForcedVariantIsTheOneInUse) {
    const char* forced = std::getenv("OSTREL_CPU");
    const typed::KernelVariant& chosen = typed::ChosenVariant();
    EXPECT_LE(chosen.needs, typed::SupportedInstructionSet());
    EXPECT_EQ(&typed::ChosenKernels(), chosen.kernels);
    if (forced == nullptr) {
        return; // the fastest here, which only a measurement tells
    }
    for (const typed::KernelVariant& variant : typed::KernelVariants()) {
        if (std::strcmp(forced, variant.name) != 0) {
            continue;
        }
        if (typed::SupportedInstructionSet() < variant.needs) {
            EXPECT_LE(chosen.needs, variant.needs) << "a variant up to the named one's set";
            GTEST_SKIP() << "this processor or system has no " << forced;
        }
        EXPECT_STREQ(chosen.name, forced);
        return;
    }
    FAIL() << "OSTREL_CPU=" << forced << " names no kernel variant";
}

// The variants differ in how they fetch one preset's table, and only there.
TEST(InstructionSet, VariantsShareTheirPerPixelTables) {
    const auto variants = typed::KernelVariants();
    ASSERT_EQ(variants.size(), 5u);
    for (std::size_t v = 1; v < variants.size(); ++v) {
        EXPECT_NE(variants[v].kernels->fixed, variants[v - 1].kernels->fixed) << variants[v].name;
        if (variants[v].needs == variants[v - 1].needs) {
            EXPECT_EQ(variants[v].kernels->mapped, variants[v - 1].kernels->mapped);
            EXPECT_EQ(variants[v].kernels->keyed, variants[v - 1].kernels->keyed);
        }
    }
}

// What the processor and the system support, against the compiler's own reading of them (which
// also asks the system whether it saves the AVX registers).
TEST(InstructionSet, DetectionAgreesWithTheCompilersReading) {
    __builtin_cpu_init();
    EXPECT_EQ(typed::SupportedInstructionSet(),
              __builtin_cpu_supports("avx512f") ? InstructionSet::kAvx512
              : __builtin_cpu_supports("avx2")  ? InstructionSet::kAvx2
                                                : InstructionSet::kSse2);
}

} // namespace
} // namespace vz::testing
