// The AVX-512 kernels; the flags are set in this folder's CMakeLists.txt.
#include "kernel_tables.h"

namespace vz::typed {

const KernelSet kAvx512Kernels = avx512::kKernels;
const KernelSet kAvx512GatherKernels = {&avx512::kLookUpTable<FixedLut, Fetch::kGather>,
                                        avx512::kKernels.mapped, avx512::kKernels.keyed};

} // namespace vz::typed
