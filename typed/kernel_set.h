// The kernels of one instruction set: for each way of choosing the pixels' tables, a 10 x 10
// table whose cell [a][b] converts input element type a into output element type b. One set is
// chosen per process, from what the processor and the operating system support.
#pragma once

#include <array>

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

// Each defined in the translation unit compiled for its instruction set.
extern const KernelSet kSse2Kernels;
extern const KernelSet kAvx2Kernels;
extern const KernelSet kAvx512Kernels;

enum class InstructionSet { kSse2, kAvx2, kAvx512 };

// The widest set the processor and the operating system support, up to AVX2, or up to the one
// the environment variable OSTREL_CPU names ("sse2", "avx2" or "avx512"). Chosen on the first
// call, then fixed for the process.
InstructionSet ChosenInstructionSet();
// The widest set the processor and the operating system support, whatever OSTREL_CPU says.
InstructionSet SupportedInstructionSet();
const KernelSet& ChosenKernels();

} // namespace vz::typed
