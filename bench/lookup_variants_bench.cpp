// The ways of moving a UInt16 frame into Float temperatures, each instruction set's variants side
// by side in one run, beside the kernels the library dispatches to:
//   Stream-*   no table at all: the fastest loops that move the same bytes (a scalar cast, whole
//              vectors converted and stored, and the same with non-temporal stores);
//   Lookup-*   a table look-up per pixel: plain scalar; the hardware gather; a software gather
//              (indices loaded 64 bits at a time, one scalar load per element, lanes inserted
//              into a vector, whole-vector stores); with non-temporal stores;
//   Status-*   the same with a status byte per pixel, from a second table or carried inside an
//              8-byte table entry and split out in registers.
// Names: <family>-<variant>/<frame>. Only ratios within one run count: memory bandwidth on shared
// machines moves by 15 % between runs.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <immintrin.h>

#include "kernel_set.h"
#include "temp_units.h"
#include "uniform_family.h"

namespace vz::bench {
namespace {

struct Frame {
    unsigned width;
    unsigned height;
    std::string Name() const { return std::to_string(width) + "x" + std::to_string(height); }
    std::size_t Pixels() const { return std::size_t{width} * height; }
};

const Frame kFrames[] = {{640, 512}, {4096, 3072}};
constexpr std::size_t kLutSize = 65536;

// The frame, the two tables, the table of 8-byte entries (value in the low half, status in the
// high one), and outputs, made once per frame size.
struct Data {
    explicit Data(const Frame& frame)
        : counts(frame.Pixels()), values(kLutSize), status(kLutSize), entries(kLutSize),
          outStorage(frame.Pixels() + 16), outStatus(frame.Pixels()) {
        // Non-temporal stores need whole aligned vectors: the output starts on a cache line.
        const auto address = reinterpret_cast<std::uintptr_t>(outStorage.data());
        out = outStorage.data() + (64 - address % 64) % 64 / sizeof(float);
        std::uint32_t noise = 12345;
        for (unsigned y = 0; y < frame.height; ++y) {
            for (unsigned x = 0; x < frame.width; ++x) {
                noise = noise * 1664525u + 1013904223u;
                counts[y * frame.width + x] = static_cast<std::uint16_t>(
                    8000 + (x * 8000) / frame.width + (y * 4000) / frame.height + (noise >> 24));
            }
        }
        for (std::uint32_t i = 0; i < kLutSize; ++i) {
            values[i] = -40.0f + static_cast<float>(i) * 0.01f;
            status[i] = i < 2000 ? eLUTBelow : i > 60000 ? eLUTAbove : eLUTValid;
            std::uint32_t bits;
            std::memcpy(&bits, &values[i], 4);
            entries[i] = bits | std::uint64_t{status[i]} << 32;
        }
    }
    std::vector<std::uint16_t> counts;
    std::vector<float> values;
    std::vector<unsigned char> status;
    std::vector<std::uint64_t> entries;
    std::vector<float> outStorage;
    float* out;
    std::vector<unsigned char> outStatus;
};

Data& DataFor(const Frame& frame) {
    static Data small(kFrames[0]), large(kFrames[1]);
    return frame.width == kFrames[0].width ? small : large;
}

// ---- Streaming: no table ---------------------------------------------------------------------

void StreamScalar(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    float* out = d.out;
    for (std::size_t k = 0; k < n; ++k) {
        out[k] = static_cast<float>(in[k]);
    }
}

template <bool kNonTemporal>
__attribute__((target("avx2"))) void StreamAvx2(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    float* out = d.out;
    std::size_t k = 0;
    for (; n - k >= 8; k += 8) {
        const __m128i counts = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + k));
        const __m256 v = _mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(counts));
        if constexpr (kNonTemporal) {
            _mm256_stream_ps(out + k, v);
        } else {
            _mm256_storeu_ps(out + k, v);
        }
    }
    for (; k < n; ++k) {
        out[k] = static_cast<float>(in[k]);
    }
    _mm_sfence();
}

template <bool kNonTemporal>
__attribute__((target("avx512f,avx512bw"))) void StreamAvx512(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    float* out = d.out;
    std::size_t k = 0;
    for (; n - k >= 16; k += 16) {
        const __m256i counts = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + k));
        const __m512 v = _mm512_cvtepi32_ps(_mm512_cvtepu16_epi32(counts));
        if constexpr (kNonTemporal) {
            _mm512_stream_ps(out + k, v);
        } else {
            _mm512_storeu_ps(out + k, v);
        }
    }
    for (; k < n; ++k) {
        out[k] = static_cast<float>(in[k]);
    }
    _mm_sfence();
}

// ---- Look-ups ----------------------------------------------------------------------------------

void LookupScalar(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    const float* lut = d.values.data();
    float* out = d.out;
    for (std::size_t k = 0; k < n; ++k) {
        out[k] = lut[in[k]];
    }
}

__attribute__((target("avx2"))) void LookupGatherAvx2(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    const float* lut = d.values.data();
    float* out = d.out;
    std::size_t k = 0;
    for (; n - k >= 8; k += 8) {
        const __m256i i =
            _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in + k)));
        // An opaque all-ones mask keeps the zeroed destination: a gather into the previous
        // group's register would wait for that group.
        __m256 all = _mm256_castsi256_ps(_mm256_set1_epi32(-1));
        __asm__("" : "+x"(all));
        _mm256_storeu_ps(out + k, _mm256_mask_i32gather_ps(_mm256_setzero_ps(), lut, i, all, 4));
    }
    for (; k < n; ++k) {
        out[k] = lut[in[k]];
    }
}

__attribute__((target("avx512f,avx512bw"))) void LookupGatherAvx512(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    const float* lut = d.values.data();
    float* out = d.out;
    std::size_t k = 0;
    for (; n - k >= 16; k += 16) {
        const __m512i i =
            _mm512_cvtepu16_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + k)));
        __mmask16 all = 0xFFFF;
        __asm__("" : "+r"(all));
        _mm512_storeu_ps(out + k, _mm512_mask_i32gather_ps(_mm512_setzero_ps(), all, i, lut, 4));
    }
    for (; k < n; ++k) {
        out[k] = lut[in[k]];
    }
}

// Four 16-bit indices from one 64-bit load, each table value loaded as a scalar and inserted.
__attribute__((target("avx2"))) inline __m128 Gather4(const float* lut, std::uint64_t four) {
    __m128 v = _mm_load_ss(lut + (four & 0xFFFF));
    v = _mm_insert_ps(v, _mm_load_ss(lut + (four >> 16 & 0xFFFF)), 0x10);
    v = _mm_insert_ps(v, _mm_load_ss(lut + (four >> 32 & 0xFFFF)), 0x20);
    return _mm_insert_ps(v, _mm_load_ss(lut + (four >> 48)), 0x30);
}

template <bool kNonTemporal>
__attribute__((target("avx2"))) void LookupSoftwareAvx2(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    const float* lut = d.values.data();
    float* out = d.out;
    std::size_t k = 0;
    for (; n - k >= 8; k += 8) {
        std::uint64_t low, high;
        std::memcpy(&low, in + k, 8);
        std::memcpy(&high, in + k + 4, 8);
        const __m256 v = _mm256_set_m128(Gather4(lut, high), Gather4(lut, low));
        if constexpr (kNonTemporal) {
            _mm256_stream_ps(out + k, v);
        } else {
            _mm256_storeu_ps(out + k, v);
        }
    }
    for (; k < n; ++k) {
        out[k] = lut[in[k]];
    }
    _mm_sfence();
}

template <bool kNonTemporal>
__attribute__((target("avx512f,avx512bw,avx512dq"))) void LookupSoftwareAvx512(Data& d,
                                                                               std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    const float* lut = d.values.data();
    float* out = d.out;
    std::size_t k = 0;
    for (; n - k >= 16; k += 16) {
        std::uint64_t four[4];
        std::memcpy(four, in + k, 32);
        const __m256 low = _mm256_set_m128(Gather4(lut, four[1]), Gather4(lut, four[0]));
        const __m256 high = _mm256_set_m128(Gather4(lut, four[3]), Gather4(lut, four[2]));
        const __m512 v = _mm512_insertf32x8(_mm512_castps256_ps512(low), high, 1);
        if constexpr (kNonTemporal) {
            _mm512_stream_ps(out + k, v);
        } else {
            _mm512_storeu_ps(out + k, v);
        }
    }
    for (; k < n; ++k) {
        out[k] = lut[in[k]];
    }
    _mm_sfence();
}

// ---- With status bytes -------------------------------------------------------------------------

void StatusScalarTwoTables(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    const float* lut = d.values.data();
    const unsigned char* marks = d.status.data();
    float* out = d.out;
    unsigned char* status = d.outStatus.data();
    for (std::size_t k = 0; k < n; ++k) {
        out[k] = lut[in[k]];
        status[k] = marks[in[k]];
    }
}

__attribute__((target("avx2"))) void StatusSoftwareTwoTables(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    const float* lut = d.values.data();
    const unsigned char* marks = d.status.data();
    float* out = d.out;
    unsigned char* status = d.outStatus.data();
    std::size_t k = 0;
    for (; n - k >= 8; k += 8) {
        std::uint64_t low, high;
        std::memcpy(&low, in + k, 8);
        std::memcpy(&high, in + k + 4, 8);
        _mm256_storeu_ps(out + k, _mm256_set_m128(Gather4(lut, high), Gather4(lut, low)));
        std::uint64_t bytes = 0;
        for (int j = 0; j < 4; ++j) {
            bytes |= std::uint64_t{marks[low >> (16 * j) & 0xFFFF]} << (8 * j);
            bytes |= std::uint64_t{marks[high >> (16 * j) & 0xFFFF]} << (8 * j + 32);
        }
        std::memcpy(status + k, &bytes, 8);
    }
    for (; k < n; ++k) {
        out[k] = lut[in[k]];
        status[k] = marks[in[k]];
    }
}

// The 8-byte entries of four 16-bit indices from one 64-bit load.
__attribute__((target("avx2"))) inline __m256i Entries4(const long long* entries,
                                                        std::uint64_t four) {
    return _mm256_setr_epi64x(entries[four & 0xFFFF], entries[four >> 16 & 0xFFFF],
                              entries[four >> 32 & 0xFFFF], entries[four >> 48]);
}

// One 8-byte load per pixel; values and status bytes separated in registers.
__attribute__((target("avx2"))) void StatusSoftwareInEntry(Data& d, std::size_t n) {
    const std::uint16_t* in = d.counts.data();
    const long long* entries = reinterpret_cast<const long long*>(d.entries.data());
    float* out = d.out;
    unsigned char* status = d.outStatus.data();
    const __m256i oddLanes = _mm256_setr_epi32(0, 2, 4, 6, 1, 3, 5, 7);
    std::size_t k = 0;
    for (; n - k >= 8; k += 8) {
        std::uint64_t low, high;
        std::memcpy(&low, in + k, 8);
        std::memcpy(&high, in + k + 4, 8);
        // value, status pairs of four pixels each; permuted into four values then four statuses.
        const __m256i a = _mm256_permutevar8x32_epi32(Entries4(entries, low), oddLanes);
        const __m256i b = _mm256_permutevar8x32_epi32(Entries4(entries, high), oddLanes);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + k),
                            _mm256_permute2x128_si256(a, b, 0x20));
        const __m256i marks = _mm256_permute2x128_si256(a, b, 0x31); // eight 32-bit statuses
        const __m128i packed16 =
            _mm_packus_epi32(_mm256_castsi256_si128(marks), _mm256_extracti128_si256(marks, 1));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(status + k),
                         _mm_packus_epi16(packed16, packed16));
    }
    for (; k < n; ++k) {
        out[k] = d.values[in[k]];
        status[k] = d.status[in[k]];
    }
}

// ---- The dispatched kernels ------------------------------------------------------------------

// One current Celsius table; nothing is ever rebuilt.
struct TableEngine {
    Data* d;
    bool UpdateLUT(unsigned char) { return true; }
    const float* LutOutput(unsigned char) const { return d->values.data(); }
    const unsigned char* LutStatus(unsigned char) const { return d->status.data(); }
    ETempType LutTempType() const { return eCelsius; }
    bool IsPresetActive(unsigned char) const { return true; }
};

void RunKernel(Data& d, std::size_t n, const typed::KernelSet& set, bool withStatus) {
    TableEngine engine{&d};
    const typed::FixedLut luts = typed::UniformPreset<TableEngine>{engine, 0}.Luts();
    const UnitConversion none = UnitConversionFor(eCelsius, eCelsius);
    typed::TableFor(set, luts)[UInt16][Float](luts, d.counts.data(), d.out,
                                              static_cast<ApiUInt32>(n),
                                              withStatus ? d.outStatus.data() : nullptr, none);
}

struct Variant {
    std::string name;
    std::function<void(Data&, std::size_t)> loop;
    typed::InstructionSet needs;
};

// The loops above, then the dispatched kernels of every kernel variant, with and without status
// bytes: Kernel-<variant> and Kernel-<variant>-status.
std::vector<Variant> Variants() {
    using typed::InstructionSet;
    std::vector<Variant> variants = {
        {"Stream-scalar", StreamScalar, InstructionSet::kSse2},
        {"Stream-avx2", StreamAvx2<false>, InstructionSet::kAvx2},
        {"Stream-avx2-nt", StreamAvx2<true>, InstructionSet::kAvx2},
        {"Stream-avx512", StreamAvx512<false>, InstructionSet::kAvx512},
        {"Stream-avx512-nt", StreamAvx512<true>, InstructionSet::kAvx512},
        {"Lookup-scalar", LookupScalar, InstructionSet::kSse2},
        {"Lookup-avx2-gather", LookupGatherAvx2, InstructionSet::kAvx2},
        {"Lookup-avx512-gather", LookupGatherAvx512, InstructionSet::kAvx512},
        {"Lookup-avx2-software", LookupSoftwareAvx2<false>, InstructionSet::kAvx2},
        {"Lookup-avx2-software-nt", LookupSoftwareAvx2<true>, InstructionSet::kAvx2},
        {"Lookup-avx512-software", LookupSoftwareAvx512<false>, InstructionSet::kAvx512},
        {"Lookup-avx512-software-nt", LookupSoftwareAvx512<true>, InstructionSet::kAvx512},
        {"Status-scalar-two-tables", StatusScalarTwoTables, InstructionSet::kSse2},
        {"Status-avx2-software-two-tables", StatusSoftwareTwoTables, InstructionSet::kAvx2},
        {"Status-avx2-software-in-entry", StatusSoftwareInEntry, InstructionSet::kAvx2}};
    for (const typed::KernelVariant& kernel : typed::KernelVariants()) {
        for (const bool withStatus : {false, true}) {
            variants.push_back(
                {std::string("Kernel-") + kernel.name + (withStatus ? "-status" : ""),
                 [&kernel, withStatus](Data& d, std::size_t n) {
                     RunKernel(d, n, *kernel.kernels, withStatus);
                 },
                 kernel.needs});
        }
    }
    return variants;
}

void Run(benchmark::State& state, const Variant& variant, const Frame& frame) {
    if (typed::SupportedInstructionSet() < variant.needs) {
        state.SkipWithError("this processor or system lacks the instruction set");
        return;
    }
    Data& d = DataFor(frame);
    for (auto _ : state) {
        variant.loop(d, frame.Pixels());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * frame.Pixels()));
    // A fast loop that gives other results measures nothing.
    const bool streams = variant.name.starts_with("Stream");
    const bool marks =
        variant.name.find("status") != std::string::npos || variant.name.starts_with("Status");
    for (std::size_t k = 0; k < frame.Pixels(); ++k) {
        const std::uint16_t count = d.counts[k];
        const float expected = streams ? static_cast<float>(count) : d.values[count];
        if (std::memcmp(&d.out[k], &expected, 4) != 0 ||
            (marks && d.outStatus[k] != d.status[count])) {
            state.SkipWithError("a result differs from the scalar loop's");
            return;
        }
    }
    std::fill(d.outStatus.begin(), d.outStatus.end(), 0xFF);
}

} // namespace
} // namespace vz::bench

int main(int argc, char** argv) {
    using namespace vz::bench;
    static const std::vector<Variant> variants = Variants();
    for (const Frame& frame : kFrames) {
        for (const Variant& variant : variants) {
            const std::string name = variant.name + "/" + frame.Name();
            benchmark::RegisterBenchmark(name.c_str(), [&variant, frame](benchmark::State& s) {
                Run(s, variant, frame);
            })->UseRealTime();
        }
    }
    benchmark::AddCustomContext("chosen kernel variant", vz::typed::ChosenVariant().name);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
