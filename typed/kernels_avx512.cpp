// The AVX-512 kernels; the flags are set in this folder's CMakeLists.txt.
#include "kernel_tables.h"

const vz::typed::KernelSet vz::typed::kAvx512Kernels = vz::typed::avx512::kKernels;
