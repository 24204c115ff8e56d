// C++ engines on four threads building their first tables at the same moment, against the
// simulator: each must get shared buffers of its own, whatever the others' names are.
#include <ostrel.h>

#include <objbase.h>

#include <atomic>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <rendezvous.h>

#include <unique_resource.h>

#include "record_files.h"

namespace {

constexpr unsigned kThreads = 4;
constexpr unsigned kRounds = 16;
constexpr unsigned kFrames = 6;

struct Sample {
    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
};

// Each engine its own emissivity and table unit: engines sharing a table would show it.
Sample SampleOf(unsigned identity) {
    Sample sample;
    std::string error;
    if (!formats::ReadFactoryCal(OSTREL_SAMPLES_DIR "/factory_cal.txt", sample.record, error) ||
        !formats::ReadObjectParams(OSTREL_SAMPLES_DIR "/object_params.txt", sample.params, error)) {
        ADD_FAILURE() << error;
    }
    sample.params.objFactorA = 0.3f + 0.08f * static_cast<float>(identity);
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
    LoadedEngine(unsigned identity, std::mutex& handles) : mHandles(handles) {
        Sample sample = SampleOf(identity);
        const std::lock_guard lock(mHandles);
        mEngine = std::make_unique<vz::CBroadCal>();
        mLoaded =
            mEngine->SetBroadCal(0, &sample.record) && mEngine->SetObjectParams(&sample.params);
        mEngine->setLUTTempType(static_cast<vz::ETempType>(identity % 4));
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

struct Figures {
    unsigned converted = 0, failed = 0, wrong = 0;
};

// kThreads threads, engines first..first + kThreads - 1, kRounds times: each thread makes its
// engine, all wait for one another (and, with acrossProcesses, which one thread runs, for the
// other process), then all convert, first tables first.
Figures RaceEngines(unsigned first, const std::function<void(unsigned round)>& acrossProcesses) {
    // A connection held throughout keeps the library's apartment on this thread.
    const COstrel connection = GetOstrel();
    std::mutex handles;
    std::vector<std::vector<std::uint8_t>> expected;
    for (unsigned t = 0; t < kThreads; ++t) {
        LoadedEngine engine(first + t, handles);
        bool ok = false;
        expected.push_back(ConvertFrame(*engine, ok));
        if (!ok) {
            ADD_FAILURE() << "is the simulator registered?";
            return {};
        }
    }
    std::vector<std::unique_ptr<threading::Rendezvous>> gates;
    for (unsigned g = 0; g < 2 * kRounds; ++g) {
        gates.push_back(std::make_unique<threading::Rendezvous>(kThreads));
    }
    std::atomic<unsigned> failed{0}, wrong{0}, converted{0};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            const unsigned identity = first + t;
            for (unsigned round = 0; round < kRounds; ++round) {
                LoadedEngine engine(identity, handles);
                failed += !engine.Loaded();
                gates[2 * round]->ArriveAndWait();
                if (t == 0 && acrossProcesses) {
                    acrossProcesses(round);
                }
                gates[2 * round + 1]->ArriveAndWait();
                for (unsigned frame = 0; frame < kFrames; ++frame) {
                    // Now and then a rebuild, as a change of unit and back brings.
                    if (frame % 3 == 2) {
                        (*engine).setLUTTempType(static_cast<vz::ETempType>((identity + 1) % 4));
                        (*engine).setLUTTempType(static_cast<vz::ETempType>(identity % 4));
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
    return {converted, failed, wrong};
}

void ExpectAllConverted(const Figures& figures) {
    EXPECT_EQ(figures.converted, kThreads * kRounds * kFrames);
    EXPECT_EQ(figures.failed, 0u);
    EXPECT_EQ(figures.wrong, 0u) << "frames converted through another engine's table";
}

TEST(EngineThreads, FirstTablesBuiltAtOnceAreEachEnginesOwn) {
    ExpectAllConverted(RaceEngines(0, nullptr));
}

// The gate of two processes racing: each says it is ready on a semaphore, and goes when the
// round's event is set.
std::wstring GateName(const std::wstring& base, const wchar_t* what, unsigned round = 0) {
    return base + L" " + what + std::to_wstring(round);
}

// One of the two processes of the test below, started by it; never run on its own.
TEST(EngineThreads, DISABLED_OneOfTwoProcesses) {
    wchar_t base[64] = L"";
    wchar_t index[8] = L"";
    ASSERT_NE(GetEnvironmentVariableW(L"OSTREL_TEST_GATE", base, 64), 0u);
    ASSERT_NE(GetEnvironmentVariableW(L"OSTREL_TEST_PROCESS", index, 8), 0u);
    const owners::UniqueHandle ready(
        OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, GateName(base, L"ready").c_str()));
    ASSERT_TRUE(ready);
    ExpectAllConverted(RaceEngines(kThreads * std::stoul(index), [&](unsigned round) {
        const owners::UniqueHandle go(
            OpenEventW(SYNCHRONIZE, FALSE, GateName(base, L"go", round).c_str()));
        ReleaseSemaphore(ready.get(), 1, nullptr);
        WaitForSingleObject(go.get(), 30000);
    }));
}

TEST(EngineThreads, TwoProcessesBuildTheirFirstTablesAtOnce) {
    const std::wstring base = L"ostrel engine threads " + std::to_wstring(GetCurrentProcessId());
    const owners::UniqueHandle ready(
        CreateSemaphoreW(nullptr, 0, 2, GateName(base, L"ready").c_str()));
    std::vector<owners::UniqueHandle> go;
    for (unsigned round = 0; round < kRounds; ++round) {
        go.emplace_back(CreateEventW(nullptr, TRUE, FALSE, GateName(base, L"go", round).c_str()));
    }
    wchar_t self[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    SetEnvironmentVariableW(L"OSTREL_TEST_GATE", base.c_str());
    std::vector<owners::UniqueHandle> children;
    for (unsigned process = 0; process < 2; ++process) {
        SetEnvironmentVariableW(L"OSTREL_TEST_PROCESS", std::to_wstring(process).c_str());
        std::wstring command = L"\"" + std::wstring(self) +
                               L"\" --gtest_also_run_disabled_tests "
                               L"--gtest_filter=EngineThreads.DISABLED_OneOfTwoProcesses";
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                   nullptr, &startup, &started));
        CloseHandle(started.hThread);
        children.emplace_back(started.hProcess);
    }
    for (unsigned round = 0; round < kRounds; ++round) {
        for (int process = 0; process < 2; ++process) {
            ASSERT_EQ(WaitForSingleObject(ready.get(), 30000), WAIT_OBJECT_0) << round;
        }
        SetEvent(go[round].get());
    }
    for (const owners::UniqueHandle& child : children) {
        ASSERT_EQ(WaitForSingleObject(child.get(), 30000), WAIT_OBJECT_0);
        DWORD code = 1;
        GetExitCodeProcess(child.get(), &code);
        EXPECT_EQ(code, 0u) << "a process converted through another's table, or failed";
    }
}

} // namespace
