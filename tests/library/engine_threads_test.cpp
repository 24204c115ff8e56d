// C++ engines on four threads building their first tables at the same moment, against the
// simulator: each must get shared buffers of its own, whatever the others' names are.
#include <ostrel.h>

#include <objbase.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <rendezvous.h>

#include "record_files.h"

namespace {

constexpr unsigned kThreads = 4;
constexpr unsigned kRounds = 16;
constexpr unsigned kFrames = 6;

struct Sample {
    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
};

// Each thread its own emissivity and table unit: engines sharing a table would show it.
Sample SampleOfThread(unsigned thread) {
    Sample sample;
    std::string error;
    if (!formats::ReadFactoryCal(OSTREL_SAMPLES_DIR "/factory_cal.txt", sample.record, error) ||
        !formats::ReadObjectParams(OSTREL_SAMPLES_DIR "/object_params.txt", sample.params, error)) {
        ADD_FAILURE() << error;
    }
    sample.params.objFactorA = 0.6f + 0.1f * static_cast<float>(thread);
    return sample;
}

std::vector<std::uint8_t> ConvertFrame(vz::CBroadCal& engine, bool& ok) {
    std::vector<std::uint16_t> counts(160 * 120);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        counts[i] = static_cast<std::uint16_t>(860 + i * 7919 % 62700);
    }
    std::vector<float> temps(counts.size());
    std::vector<std::uint8_t> bytes(counts.size() * (sizeof(float) + 1));
    ok = engine.CountsToTemp(0, {counts.data(), vz::UInt16}, {temps.data(), vz::Float},
                             static_cast<unsigned long>(counts.size()),
                             bytes.data() + temps.size() * sizeof(float), vz::eCelsius);
    std::memcpy(bytes.data(), temps.data(), temps.size() * sizeof(float));
    return bytes;
}

// Calibration handles are made and dropped one thread at a time, as the engine requires; the
// first table builds, which make the shared buffers, run together.
class LoadedEngine {
public:
    LoadedEngine(unsigned thread, std::mutex& handles) : mHandles(handles) {
        Sample sample = SampleOfThread(thread);
        const std::lock_guard lock(mHandles);
        mEngine = std::make_unique<vz::CBroadCal>();
        mLoaded =
            mEngine->SetBroadCal(0, &sample.record) && mEngine->SetObjectParams(&sample.params);
        mEngine->setLUTTempType(static_cast<vz::ETempType>(thread));
    }
    ~LoadedEngine() {
        const std::lock_guard lock(mHandles);
        mEngine.reset();
    }
    vz::CBroadCal& operator*() { return *mEngine; }
    bool Loaded() const { return mLoaded; }

private:
    std::mutex& mHandles;
    std::unique_ptr<vz::CBroadCal> mEngine;
    bool mLoaded = false;
};

TEST(EngineThreads, FirstTablesBuiltAtOnceAreEachEnginesOwn) {
    // A connection held throughout keeps the library's apartment on this thread.
    const COstrel connection = GetOstrel();
    ASSERT_TRUE(connection) << "is the simulator registered?";
    std::mutex handles;
    std::vector<std::vector<std::uint8_t>> expected;
    for (unsigned t = 0; t < kThreads; ++t) {
        LoadedEngine engine(t, handles);
        ASSERT_TRUE(engine.Loaded());
        bool ok = false;
        expected.push_back(ConvertFrame(*engine, ok));
        ASSERT_TRUE(ok);
    }
    std::vector<std::unique_ptr<threading::Rendezvous>> gates;
    for (unsigned g = 0; g < kRounds; ++g) {
        gates.push_back(std::make_unique<threading::Rendezvous>(kThreads));
    }
    std::atomic<unsigned> failed{0}, wrong{0}, converted{0};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            for (unsigned round = 0; round < kRounds; ++round) {
                LoadedEngine engine(t, handles);
                failed += !engine.Loaded();
                gates[round]->ArriveAndWait();
                for (unsigned frame = 0; frame < kFrames; ++frame) {
                    // Now and then a rebuild, as a change of unit and back brings.
                    if (frame % 3 == 2) {
                        (*engine).setLUTTempType(static_cast<vz::ETempType>((t + 1) % 4));
                        (*engine).setLUTTempType(static_cast<vz::ETempType>(t));
                    }
                    bool ok = false;
                    const std::vector<std::uint8_t> answer = ConvertFrame(*engine, ok);
                    failed += !ok;
                    wrong += ok && answer != expected[t];
                    ++converted;
                }
            }
            CoUninitialize();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(converted, kThreads * kRounds * kFrames);
    EXPECT_EQ(failed, 0u);
    EXPECT_EQ(wrong, 0u) << "frames converted through another engine's table";
}

} // namespace
