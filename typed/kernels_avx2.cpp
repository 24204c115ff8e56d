// The AVX2 kernels; the flags are set in this folder's CMakeLists.txt.
#include "kernel_tables.h"

namespace vz::typed {

const KernelSet kAvx2Kernels = avx2::kKernels;
const KernelSet kAvx2GatherKernels = {&avx2::kLookUpTable<FixedLut, Fetch::kGather>,
                                      avx2::kKernels.mapped, avx2::kKernels.keyed};

} // namespace vz::typed
