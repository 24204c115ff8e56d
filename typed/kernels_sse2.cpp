// The kernels compiled for sse2; the flags are set in this folder's CMakeLists.txt.
#include "kernel_tables.h"

const vz::typed::KernelSet vz::typed::kSse2Kernels = vz::typed::sse2::kKernels;
