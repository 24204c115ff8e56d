#include <chrono>

#include "stress_modes.h"

namespace stress {
namespace {

bool OneCycle(const SampleCalibration& sample) {
    vz::CBroadCal engine;
    auto record = sample.record;
    auto params = sample.params;
    return engine.SetBroadCal(0, &record) && engine.SetObjectParams(&params) &&
           engine.UpdateLUT(0) && engine.GetLUTOutput(0) != nullptr;
}

} // namespace

LifecycleFigures RunLifecycles(unsigned cycles, const SampleCalibration& sample) {
    // Connected throughout, as a host is while its camera is open: otherwise the server process
    // may end with each engine and start again with the next, and the cycles measure that.
    const COstrel connection = GetOstrel();
    LifecycleFigures figures;
    figures.failures += OneCycle(sample) ? 0 : 1;
    figures.before = MeasureProcess();
    const auto start = std::chrono::steady_clock::now();
    for (unsigned i = 0; i < cycles; ++i) {
        figures.failures += OneCycle(sample) ? 0 : 1;
    }
    const std::chrono::duration<double, std::milli> elapsed =
        std::chrono::steady_clock::now() - start;
    figures.after = MeasureProcess();
    figures.cycles = cycles;
    figures.msPerCycle = cycles ? elapsed.count() / cycles : 0;
    return figures;
}

} // namespace stress
