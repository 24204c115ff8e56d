// The stress modes of ostrel-stress, run against the simulator. Each returns its figures; the
// program prints them and the tests check them on small runs.
#pragma once

#include <ostrel.h>

#include <cstdint>
#include <string>
#include <vector>

namespace stress {

// What the process holds, as the operating system counts it.
struct ProcessFigures {
    unsigned handles = 0;
    std::uint64_t privateBytes = 0;
};
ProcessFigures MeasureProcess();

// The calibration every mode loads into preset 0.
struct SampleCalibration {
    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
};

// Engines made, loaded with the sample, given a table and destroyed, one after another, while a
// connection is held. The figures are taken after a first cycle, which creates what lives for
// the process.
struct LifecycleFigures {
    unsigned cycles = 0;
    unsigned failures = 0;
    ProcessFigures before, after;
    double msPerCycle = 0;
};
LifecycleFigures RunLifecycles(unsigned cycles, const SampleCalibration& sample);

// Threads, each in an apartment of its own, calling GetServerVersion through GetOstrel(). With
// `held` the main thread holds a connection throughout; without it nothing does, so first
// connections and last releases race each other.
struct ThreadFigures {
    unsigned calls = 0;
    unsigned failures = 0;
    double msPerCall = 0; // as each thread waits for it
};
ThreadFigures RunThreadCalls(unsigned threads, unsigned callsPerThread, bool held);

// One calibration slot failing in one way, and what each engine member returned meanwhile: a
// fresh engine goes through the members in the order a host uses them.
struct FaultRow {
    unsigned long slot = 0;
    long mode = 0;
    std::vector<std::pair<const char*, bool>> results;
};
struct FaultFigures {
    bool controlled = false;    // false when the server is not the simulator
    std::vector<FaultRow> rows; // the first one without a fault
    bool recovered = false;     // every member succeeded again once the faults were cleared
};
FaultFigures RunFaults(const SampleCalibration& sample);

} // namespace stress
