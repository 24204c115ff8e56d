#include <objbase.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>
#include <vector>

#include <rendezvous.h>

#include "stress_modes.h"

namespace stress {

ThreadFigures RunThreadCalls(unsigned threads, unsigned callsPerThread, bool held) {
    std::optional<COstrel> holder;
    if (held) {
        holder.emplace(GetOstrel());
    }
    threading::Rendezvous started(threads);
    threading::Rendezvous finished(threads);
    std::atomic<unsigned> failures{0};
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::thread> workers;
    for (unsigned t = 0; t < threads; ++t) {
        workers.emplace_back([&] {
            const bool inApartment = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
            started.ArriveAndWait();
            for (unsigned i = 0; i < callsPerThread; ++i) {
                COstrel host = GetOstrel();
                ULONG major = 0, minor = 0, build = 0;
                if (!host || host->GetServerVersion(&major, &minor, &build) != S_OK) {
                    ++failures;
                }
            }
            // A connection made in this apartment may still serve the other threads.
            finished.ArriveAndWait();
            if (inApartment) {
                CoUninitialize();
            }
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    const std::chrono::duration<double, std::milli> elapsed =
        std::chrono::steady_clock::now() - start;
    ThreadFigures figures;
    figures.calls = threads * callsPerThread;
    figures.failures = failures;
    figures.msPerCall = figures.calls ? elapsed.count() * threads / figures.calls : 0;
    return figures;
}

} // namespace stress
