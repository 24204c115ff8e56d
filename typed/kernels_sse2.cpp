// The baseline kernels, for every x86-64 processor: compiled without extra flags.
#include "kernel_tables.h"

const vz::typed::KernelSet vz::typed::kSse2Kernels = vz::typed::sse2::kKernels;
