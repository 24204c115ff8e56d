// The kernel set the environment forces is the one the dispatchers use, where the processor and
// the system have it; these tests run once per set, and once unforced. Detection itself agrees with
// the compiler's.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <gtest/gtest.h>

#include "kernel_set.h"

namespace vz::testing {
namespace {

using typed::InstructionSet;

TEST(InstructionSet, TheForcedSetIsTheOneInUse) {
    const char* forced = std::getenv("OSTREL_CPU");
    if (forced == nullptr) {
        // Unforced, AVX-512 is left out: it does not pay on the processors measured.
        EXPECT_EQ(typed::ChosenInstructionSet(),
                  std::min(typed::SupportedInstructionSet(), InstructionSet::kAvx2));
        return;
    }
    const struct {
        const char* name;
        InstructionSet set;
        const typed::KernelSet& kernels;
    } sets[] = {{"sse2", InstructionSet::kSse2, typed::kSse2Kernels},
                {"avx2", InstructionSet::kAvx2, typed::kAvx2Kernels},
                {"avx512", InstructionSet::kAvx512, typed::kAvx512Kernels}};
    for (const auto& set : sets) {
        if (std::strcmp(forced, set.name) != 0) {
            continue;
        }
        if (typed::SupportedInstructionSet() < set.set) {
            GTEST_SKIP() << "this processor or system has no " << forced;
        }
        EXPECT_EQ(typed::ChosenInstructionSet(), set.set);
        EXPECT_EQ(typed::ChosenKernels().fixed, set.kernels.fixed);
        EXPECT_EQ(typed::ChosenKernels().keyed, set.kernels.keyed);
        return;
    }
    FAIL() << "OSTREL_CPU=" << forced << " names no instruction set";
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
