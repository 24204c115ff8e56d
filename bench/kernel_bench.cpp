// Throughput of the uniform-preset kernels of every instruction set against baselines measured in
// the same run: a streaming loop that moves the same bytes without a table, a plain scalar table
// look-up, and for narrow integers a look-up in a table already converted to the output type.
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "element_types.h"
#include "kernel_set.h"
#include "temp_units.h"
#include "uniform_family.h"

namespace vz::bench {
namespace {

const char* const kTypeNames[] = {"Int8",   "UInt8", "Int16",  "UInt16", "Int32",
                                  "UInt32", "Int64", "UInt64", "Float",  "Double"};

struct Frame {
    unsigned width;
    unsigned height;
    std::string Name() const { return std::to_string(width) + "x" + std::to_string(height); }
    ApiUInt32 Pixels() const { return width * height; }
};

const Frame kFrames[] = {{640, 512}, {4096, 3072}};

// Every kernel variant, measured in the same run so that the load of the machine spreads over all.
using Path = typed::KernelVariant;
const std::span<const Path> kPaths = typed::KernelVariants();

// One current Celsius table for every preset: nothing is ever rebuilt, as in a steady stream of
// frames.
class BenchEngine {
public:
    BenchEngine() : values(kLutSize), status(kLutSize) {
        for (std::uint32_t i = 0; i < kLutSize; ++i) {
            values[i] = -40.0f + static_cast<float>(i) * 0.01f;
            status[i] = i < 2000 ? eLUTBelow : i > 60000 ? eLUTAbove : eLUTValid;
        }
    }
    bool UpdateLUT(unsigned char) { return true; }
    const float* LutOutput(unsigned char) const { return values.data(); }
    const unsigned char* LutStatus(unsigned char) const { return status.data(); }
    ETempType LutTempType() const { return eCelsius; }
    bool IsPresetActive(unsigned char) const { return true; }

private:
    std::vector<float> values;
    std::vector<unsigned char> status;
};

// Counts as a detector delivers them: a smooth scene with some noise, folded into the range of
// the narrow types. Made once per type and frame: every repetition reads the same frame.
template <class In> const std::vector<In>& SceneCounts(const Frame& frame) {
    static std::map<ApiUInt32, std::vector<In>> scenes;
    std::vector<In>& counts = scenes[frame.Pixels()];
    if (!counts.empty()) {
        return counts;
    }
    counts.resize(frame.Pixels());
    std::uint32_t noise = 12345;
    for (unsigned y = 0; y < frame.height; ++y) {
        for (unsigned x = 0; x < frame.width; ++x) {
            noise = noise * 1664525u + 1013904223u;
            std::uint32_t count =
                8000 + (x * 8000) / frame.width + (y * 4000) / frame.height + (noise >> 24);
            if constexpr (sizeof(In) == 1) {
                count &= 0x7F;
            } else if constexpr (std::is_same_v<In, std::int16_t>) {
                count &= 0x7FFF;
            }
            counts[y * frame.width + x] = static_cast<In>(count);
        }
    }
    return counts;
}

// A C++ conversion that is defined for every value the baselines meet (counts and temperatures
// well inside the 64-bit range).
template <class Out, class In> Out Narrow(In x) {
    if constexpr (std::is_floating_point_v<In> && std::is_integral_v<Out>) {
        return static_cast<Out>(static_cast<std::int64_t>(x));
    } else {
        return static_cast<Out>(x);
    }
}

template <class Run> void Measure(benchmark::State& state, ApiUInt32 pixels, Run run) {
    for (auto _ : state) {
        run();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * pixels);
}

// The path's kernel of the pair, as the engine's dispatcher reaches it once the table is current.
template <std::size_t InCode, std::size_t OutCode>
void Kernel(benchmark::State& state, Frame frame, const Path& path, ETempType type,
            bool withStatus) {
    if (typed::SupportedInstructionSet() < path.needs) {
        state.SkipWithError("this processor or system lacks the instruction set");
        return;
    }
    using In = typed::ElementType<InCode>;
    using Out = typed::ElementType<OutCode>;
    BenchEngine engine;
    const typed::FixedLut luts = typed::UniformPreset<BenchEngine>{engine, 0}.Luts();
    const UnitConversion conversion = UnitConversionFor(engine.LutTempType(), type);
    const auto kernel = typed::TableFor(*path.kernels, luts)[InCode][OutCode];
    const std::vector<In>& in = SceneCounts<In>(frame);
    std::vector<Out> out(frame.Pixels());
    std::vector<unsigned char> status(withStatus ? frame.Pixels() : 0);
    unsigned char* statusData = withStatus ? status.data() : nullptr;
    Measure(state, frame.Pixels(),
            [&] { kernel(luts, in.data(), out.data(), frame.Pixels(), statusData, conversion); });
}

template <std::size_t InCode, std::size_t OutCode>
void Stream(benchmark::State& state, Frame frame) {
    using In = typed::ElementType<InCode>;
    using Out = typed::ElementType<OutCode>;
    const std::vector<In>& in = SceneCounts<In>(frame);
    std::vector<Out> out(frame.Pixels());
    Measure(state, frame.Pixels(), [&] {
        for (ApiUInt32 k = 0; k < frame.Pixels(); ++k) {
            out[k] = Narrow<Out>(in[k]);
        }
    });
}

template <std::size_t InCode, std::size_t OutCode>
void Lookup(benchmark::State& state, Frame frame) {
    using In = typed::ElementType<InCode>;
    using Out = typed::ElementType<OutCode>;
    const BenchEngine engine;
    const float* lut = engine.LutOutput(0);
    const std::vector<In>& in = SceneCounts<In>(frame);
    std::vector<Out> out(frame.Pixels());
    Measure(state, frame.Pixels(), [&] {
        for (ApiUInt32 k = 0; k < frame.Pixels(); ++k) {
            out[k] = Narrow<Out>(lut[Narrow<std::uint16_t>(in[k])]);
        }
    });
}

// What a table converted ahead for one output type would give: an integer input of at most 16
// bits looks up its result directly, with nothing left to do per pixel.
template <class In, class Out>
inline constexpr bool kConvertible = std::is_integral_v<In> &&
                                     sizeof(In) <= 2 && std::is_integral_v<Out>;

template <std::size_t InCode, std::size_t OutCode>
void Converted(benchmark::State& state, Frame frame) {
    using In = typed::ElementType<InCode>;
    using Out = typed::ElementType<OutCode>;
    using Index = std::make_unsigned_t<In>;
    const BenchEngine engine;
    std::vector<Out> table(std::size_t{1} << (8 * sizeof(In)));
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = Narrow<Out>(engine.LutOutput(0)[i]);
    }
    const std::vector<In>& in = SceneCounts<In>(frame);
    std::vector<Out> out(frame.Pixels());
    Measure(state, frame.Pixels(), [&] {
        for (ApiUInt32 k = 0; k < frame.Pixels(); ++k) {
            out[k] = table[static_cast<Index>(in[k])];
        }
    });
}

template <std::size_t InCode, std::size_t OutCode>
std::string PairName(const char* what, const Frame& frame) {
    return std::string(what) + "/" + kTypeNames[InCode] + "/" + kTypeNames[OutCode] + "/" +
           frame.Name();
}

template <class B> void Register(const std::string& name, B&& body) {
    benchmark::RegisterBenchmark(name.c_str(), std::forward<B>(body))->UseRealTime();
}

// Same unit, no status: every pair on every path beside its two baselines.
template <std::size_t Pair> void RegisterPair(const Frame& frame) {
    constexpr std::size_t in = Pair / typed::kDataTypeCount;
    constexpr std::size_t out = Pair % typed::kDataTypeCount;
    for (const Path& path : kPaths) {
        Register(PairName<in, out>((std::string("Kernel-") + path.name).c_str(), frame),
                 [frame, &path](benchmark::State& s) {
                     Kernel<in, out>(s, frame, path, eCelsius, false);
                 });
    }
    Register(PairName<in, out>("Stream", frame),
             [frame](benchmark::State& s) { Stream<in, out>(s, frame); });
    Register(PairName<in, out>("Lookup", frame),
             [frame](benchmark::State& s) { Lookup<in, out>(s, frame); });
    if constexpr (kConvertible<typed::ElementType<in>, typed::ElementType<out>>) {
        Register(PairName<in, out>("Converted", frame),
                 [frame](benchmark::State& s) { Converted<in, out>(s, frame); });
    }
}

template <std::size_t... Pairs>
void RegisterAllPairs(const Frame& frame, std::index_sequence<Pairs...>) {
    (RegisterPair<Pairs>(frame), ...);
}

// Unit conversion and status on a representative set, on every path; named
// Kernel-<path>/<In>/<Out>/<variant>/<frame>.
template <std::size_t InCode, std::size_t OutCode>
void RegisterVariant(const Frame& frame, const char* variant, ETempType type, bool withStatus) {
    for (const Path& path : kPaths) {
        const std::string name = std::string("Kernel-") + path.name + "/" + kTypeNames[InCode] +
                                 "/" + kTypeNames[OutCode] + "/" + variant + "/" + frame.Name();
        Register(name, [=, &path](benchmark::State& s) {
            Kernel<InCode, OutCode>(s, frame, path, type, withStatus);
        });
    }
}

void RegisterVariants(const Frame& frame) {
    RegisterVariant<UInt16, Float>(frame, "status", eCelsius, true);
    RegisterVariant<UInt16, Float>(frame, "toF", eFahrenheit, false);
    RegisterVariant<UInt16, Float>(frame, "toK", eKelvin, false);
    RegisterVariant<UInt16, Float>(frame, "toF+status", eFahrenheit, true);
    RegisterVariant<UInt16, Double>(frame, "toF", eFahrenheit, false);
    RegisterVariant<UInt16, UInt16>(frame, "toF", eFahrenheit, false);
    RegisterVariant<UInt16, UInt16>(frame, "status", eCelsius, true);
    RegisterVariant<Float, Float>(frame, "toF", eFahrenheit, false);
    RegisterVariant<Float, Float>(frame, "status", eCelsius, true);
    RegisterVariant<Int32, Float>(frame, "toR", eRankine, false);
    RegisterVariant<UInt8, Float>(frame, "toF", eFahrenheit, false);
    RegisterVariant<UInt8, UInt16>(frame, "toF", eFahrenheit, false);
}

} // namespace
} // namespace vz::bench

int main(int argc, char** argv) {
    using namespace vz;
    for (const bench::Frame& frame : bench::kFrames) {
        bench::RegisterAllPairs(
            frame, std::make_index_sequence<typed::kDataTypeCount * typed::kDataTypeCount>{});
        bench::RegisterVariants(frame);
    }
    benchmark::AddCustomContext("chosen kernel variant", typed::ChosenVariant().name);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
