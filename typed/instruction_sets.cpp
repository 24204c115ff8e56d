#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <vector>

#if defined(_MSC_VER)
#include <intrin.h>
#else
#include <cpuid.h>
#endif

#include "kernel_set.h"
#include "variant_timing.h"

namespace vz::typed {
namespace {

struct Registers {
    unsigned a = 0, b = 0, c = 0, d = 0;
};

Registers Cpuid(unsigned leaf, unsigned subleaf) {
    Registers r;
#if defined(_MSC_VER)
    int out[4];
    __cpuidex(out, static_cast<int>(leaf), static_cast<int>(subleaf));
    r = {unsigned(out[0]), unsigned(out[1]), unsigned(out[2]), unsigned(out[3])};
#else
    if (!__get_cpuid_count(leaf, subleaf, &r.a, &r.b, &r.c, &r.d)) {
        return {};
    }
#endif
    return r;
}

// The register state the operating system saves on a thread switch (XCR0).
unsigned long long SavedState() {
#if defined(_MSC_VER)
    return _xgetbv(0);
#else
    unsigned low = 0, high = 0;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (static_cast<unsigned long long>(high) << 32) | low;
#endif
}

InstructionSet Detected() {
    const Registers basic = Cpuid(1, 0);
    const bool osxsave = (basic.c >> 27) & 1;
    const bool avx = (basic.c >> 28) & 1;
    if (!osxsave || !avx || Cpuid(0, 0).a < 7) {
        return InstructionSet::kSse2;
    }
    const unsigned long long state = SavedState();
    const Registers extended = Cpuid(7, 0);
    constexpr unsigned long long kYmm = 0x6;  // SSE and AVX state
    constexpr unsigned long long kZmm = 0xE6; // and the mask, upper ZMM and ZMM16-31 state
    if ((extended.b >> 16 & 1) && (state & kZmm) == kZmm) {
        return InstructionSet::kAvx512;
    }
    if ((extended.b >> 5 & 1) && (state & kYmm) == kYmm) {
        return InstructionSet::kAvx2;
    }
    return InstructionSet::kSse2;
}

constexpr KernelVariant kVariants[] = {
    {"sse2", InstructionSet::kSse2, &kSse2Kernels},
    {"avx2", InstructionSet::kAvx2, &kAvx2Kernels},
    {"avx2-gather", InstructionSet::kAvx2, &kAvx2GatherKernels},
    {"avx512", InstructionSet::kAvx512, &kAvx512Kernels},
    {"avx512-gather", InstructionSet::kAvx512, &kAvx512GatherKernels}};

const KernelVariant& Choose() {
    const char* name = std::getenv("OSTREL_CPU");
    const std::string_view asked = name == nullptr ? "" : name;
    InstructionSet limit = InstructionSet::kAvx512;
    for (const KernelVariant& variant : kVariants) {
        if (asked == variant.name) {
            if (variant.needs <= SupportedInstructionSet()) {
                return variant;
            }
            limit = variant.needs;
        }
    }
    std::vector<const KernelVariant*> candidates;
    for (const KernelVariant& variant : kVariants) {
        if (variant.needs <= std::min(limit, SupportedInstructionSet())) {
            candidates.push_back(&variant);
        }
    }
    return FastestVariant(candidates);
}

} // namespace

std::span<const KernelVariant> KernelVariants() {
    return kVariants;
}

InstructionSet SupportedInstructionSet() {
    static const InstructionSet supported = Detected();
    return supported;
}

const KernelVariant& ChosenVariant() {
    static const KernelVariant& chosen = Choose();
    return chosen;
}

} // namespace vz::typed
