// The kernels of one instruction set: for each way of choosing the pixels' tables, a 10 x 10
// table whose cell [a][b] converts input element type a into output element type b. One set is
// chosen per process, from what the processor and the operating system support and from how fast
// each set looks tables up on it.
#pragma once

#include <array>
#include <span>

#include "element_types.h"
#include "lut_sources.h"
#include "unit_formulas.h"

namespace vz::typed {

template <class Source>
using LookUpKernel = void (*)(const Source& luts, const void* in, void* out, ApiUInt32 n,
                              unsigned char* status, const UnitConversion& unit);

template <class Source>
using LookUpTable = std::array<std::array<LookUpKernel<Source>, kDataTypeCount>, kDataTypeCount>;

struct KernelSet {
    const LookUpTable<FixedLut>* fixed;
    const LookUpTable<MappedLuts>* mapped;
    const LookUpTable<KeyedLuts>* keyed;
};

inline const LookUpTable<FixedLut>& TableFor(const KernelSet& set, const FixedLut&) {
    return *set.fixed;
}
inline const LookUpTable<MappedLuts>& TableFor(const KernelSet& set, const MappedLuts&) {
    return *set.mapped;
}
inline const LookUpTable<KeyedLuts>& TableFor(const KernelSet& set, const KeyedLuts&) {
    return *set.keyed;
}

// Each defined in the translation unit compiled for its instruction set; the Gather sets fetch
// one preset's table with the gather instruction, the others with loads.
extern const KernelSet kSse2Kernels;
extern const KernelSet kAvx2Kernels;
extern const KernelSet kAvx2GatherKernels;
extern const KernelSet kAvx512Kernels;
extern const KernelSet kAvx512GatherKernels;

enum class InstructionSet { kSse2, kAvx2, kAvx512 };

// A kernel set with the instruction set it needs, named as OSTREL_CPU names it.
struct KernelVariant {
    const char* name;
    InstructionSet needs;
    const KernelSet* kernels;
};

// Every variant: "sse2", "avx2", "avx2-gather", "avx512", "avx512-gather".
std::span<const KernelVariant> KernelVariants();

// The widest set the processor and the operating system support.
InstructionSet SupportedInstructionSet();

// The variant the dispatchers use, chosen on the first call and then fixed for the process: the
// one the environment variable OSTREL_CPU names where the processor and the system have its set;
// else the fastest, by a short measurement, of those they have (up to the named variant's set,
// when OSTREL_CPU names one they lack).
const KernelVariant& ChosenVariant();
inline const KernelSet& ChosenKernels() {
    return *ChosenVariant().kernels;
}

} // namespace vz::typed
