// The AVX2 kernels; the flags are set in this folder's CMakeLists.txt.
#include "kernel_tables.h"

const vz::typed::KernelSet vz::typed::kAvx2Kernels = vz::typed::avx2::kKernels;
