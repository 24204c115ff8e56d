#include <algorithm>
#include <cstdlib>
#include <string_view>

#if defined(_MSC_VER)
#include <intrin.h>
#else
#include <cpuid.h>
#endif

#include "kernel_set.h"

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

// AVX-512 only when asked for: its gathers lost to AVX2's loads on the processor we measured
// (bench/README.md).
InstructionSet Requested(InstructionSet supported) {
    const char* name = std::getenv("OSTREL_CPU");
    const std::string_view asked = name == nullptr ? "" : name;
    const InstructionSet limit = asked == "sse2"     ? InstructionSet::kSse2
                                 : asked == "avx512" ? InstructionSet::kAvx512
                                                     : InstructionSet::kAvx2;
    return std::min(limit, supported);
}

} // namespace

InstructionSet SupportedInstructionSet() {
    static const InstructionSet supported = Detected();
    return supported;
}

InstructionSet ChosenInstructionSet() {
    static const InstructionSet chosen = Requested(SupportedInstructionSet());
    return chosen;
}

const KernelSet& ChosenKernels() {
    static const KernelSet& kernels = []() -> const KernelSet& {
        switch (ChosenInstructionSet()) {
        case InstructionSet::kAvx512:
            return kAvx512Kernels;
        case InstructionSet::kAvx2:
            return kAvx2Kernels;
        case InstructionSet::kSse2:
            break;
        }
        return kSse2Kernels;
    }();
    return kernels;
}

} // namespace vz::typed
