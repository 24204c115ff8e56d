// Kernel code is compiled once per instruction set, each time in a namespace named for the set
// its translation unit targets, so that an inline function compiled with wider instructions can
// never stand in for the baseline's copy at link time. Headers in that namespace open it with
// OSTREL_ISA_BEGIN; code outside them reaches the baseline's copy under the usual names.
#pragma once

#if defined(__AVX512F__)
#define OSTREL_ISA avx512
#elif defined(__AVX2__)
#define OSTREL_ISA avx2
#else
#define OSTREL_ISA sse2
#endif

#define OSTREL_ISA_BEGIN                                                                           \
    namespace vz::typed {                                                                          \
    inline namespace OSTREL_ISA {
#define OSTREL_ISA_END                                                                             \
    }                                                                                              \
    }
