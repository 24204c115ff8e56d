// ostrel-stress: runs the library hard against the camera server (the simulator, for the fault
// sweep) and prints what it measured. Exit code 0 when nothing failed.
//   ostrel-stress lifecycles N         engines made, loaded, given a table and destroyed N times
//   ostrel-stress threads T N held|churn   T threads making N calls each
//   ostrel-stress faults               every calibration slot failing in every way
#include <cstdio>
#include <cstdlib>
#include <string>

#include "record_files.h"
#include "stress_modes.h"

namespace {

constexpr char kUsage[] = "ostrel-stress: usage: ostrel-stress lifecycles N | threads T N "
                          "held|churn | faults";

// A whole positive number below a million, or 0.
unsigned Count(const char* text) {
    char* end = nullptr;
    const unsigned long value = std::strtoul(text, &end, 10);
    return *text != '\0' && *text != '-' && *end == '\0' && value < 1000000 ? value : 0;
}

double Mebibytes(std::uint64_t bytes) {
    return static_cast<double>(bytes) / (1 << 20);
}

int Lifecycles(unsigned cycles, const stress::SampleCalibration& sample) {
    const stress::LifecycleFigures f = stress::RunLifecycles(cycles, sample);
    std::printf("lifecycles %u: %u failures, %.2f ms per cycle\n", f.cycles, f.failures,
                f.msPerCycle);
    std::printf("  handles %u -> %u, private bytes %.1f MiB -> %.1f MiB\n", f.before.handles,
                f.after.handles, Mebibytes(f.before.privateBytes), Mebibytes(f.after.privateBytes));
    return f.failures == 0 && f.after.handles <= f.before.handles ? 0 : 1;
}

int Threads(unsigned threads, unsigned calls, bool held) {
    const stress::ThreadFigures f = stress::RunThreadCalls(threads, calls, held);
    std::printf("threads %u x %u %s: %u calls, %u failures, %.3f ms per call on each thread, "
                "%.0f calls per second in all\n",
                threads, calls, held ? "held" : "churn", f.calls, f.failures, f.msPerCall,
                f.msPerCall > 0 ? 1000.0 * threads / f.msPerCall : 0.0);
    return f.failures == 0 ? 0 : 1;
}

int Faults(const stress::SampleCalibration& sample) {
    const stress::FaultFigures f = stress::RunFaults(sample);
    if (!f.controlled) {
        std::fprintf(stderr, "ostrel-stress: the fault sweep needs the simulator as the server\n");
        return 1;
    }
    for (const stress::FaultRow& row : f.rows) {
        if (row.mode == 0) {
            std::printf("no fault     ");
        } else {
            std::printf("slot %2lu %-5s", row.slot, row.mode == 1 ? "fail" : "false");
        }
        for (const auto& [member, ok] : row.results) {
            std::printf(" %s:%s", member, ok ? "ok" : "FALSE");
        }
        std::printf("\n");
    }
    std::printf("faults: %zu rows, no crash; %s once cleared\n", f.rows.size(),
                f.recovered ? "every member succeeds" : "members STILL FAIL");
    return f.recovered ? 0 : 1;
}

bool ReadSample(stress::SampleCalibration& sample) {
    std::string error;
    const auto folder = formats::SamplesFolder();
    if (!formats::ReadFactoryCal(folder / "factory_cal.txt", sample.record, error) ||
        !formats::ReadObjectParams(folder / "object_params.txt", sample.params, error)) {
        std::fprintf(stderr, "ostrel-stress: %s\n", error.c_str());
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    stress::SampleCalibration sample;
    if (mode == "lifecycles" && argc == 3 && Count(argv[2]) > 0) {
        return ReadSample(sample) ? Lifecycles(Count(argv[2]), sample) : 1;
    }
    const std::string how = argc == 5 ? argv[4] : "";
    if (mode == "threads" && argc == 5 && Count(argv[2]) > 0 && Count(argv[3]) > 0 &&
        (how == "held" || how == "churn")) {
        return Threads(Count(argv[2]), Count(argv[3]), how == "held");
    }
    if (mode == "faults" && argc == 2) {
        return ReadSample(sample) ? Faults(sample) : 1;
    }
    std::fprintf(stderr, "%s\n", kUsage);
    return 1;
}
