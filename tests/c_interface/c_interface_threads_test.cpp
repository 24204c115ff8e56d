// C engines on several threads at once: created, loaded, converting and destroyed together while
// the library's apartment comes and goes, and a thread without COM told what to do about it.
#include <ostrel_c.h>

#include <objbase.h>

#include <atomic>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <rendezvous.h>

#include "apartment.h"
#include "host_state.h"

namespace {

using host_state::Engine;
using host_state::HostState;

constexpr unsigned kThreads = 4;
constexpr unsigned kRounds = 10;
constexpr unsigned kFrames = 6;

// A 160x120 frame across the calibrated range, converted through preset 0 with status bytes.
std::vector<std::uint8_t> ConvertFrame(ostrel_engine* engine, ostrel_status& status) {
    std::vector<std::uint16_t> counts(160 * 120);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        counts[i] = static_cast<std::uint16_t>(860 + i * 7919 % 62700);
    }
    std::vector<float> temps(counts.size());
    std::vector<std::uint8_t> bytes(counts.size() * (sizeof(float) + 1));
    status = ostrel_convert_uniform(engine, 0, counts.data(), OSTREL_UINT16, temps.data(),
                                    OSTREL_FLOAT, static_cast<std::uint32_t>(counts.size()),
                                    bytes.data() + temps.size() * sizeof(float), OSTREL_CELSIUS);
    std::memcpy(bytes.data(), temps.data(), temps.size() * sizeof(float));
    return bytes;
}

// Each thread its own parameters and table unit, so that engines sharing anything would show it.
HostState StateOfThread(unsigned thread) {
    const host_state::Samples& samples = host_state::LoadSamples();
    HostState state;
    state.records[0] = samples.recordA;
    state.params = samples.paramsA;
    state.params->objFactorA = 0.6f + 0.1f * static_cast<float>(thread);
    state.unit = thread;
    state.active = {1, 0, 0, 0};
    return state;
}

// Every round, all threads make an engine at once, load it, convert, rebuild its table now and
// then, and destroy it; with no engine left between rounds, the library leaves its apartment and
// enters it again on whichever thread comes first.
TEST(CInterfaceThreads, EnginesComeAndGoOnFourThreadsWhileTheApartmentDoes) {
    std::vector<std::vector<std::uint8_t>> expected;
    for (unsigned t = 0; t < kThreads; ++t) {
        Engine engine;
        ASSERT_EQ(host_state::Apply(engine.get(), StateOfThread(t)), OSTREL_OK)
            << "is the simulator registered?";
        ostrel_status status = OSTREL_OK;
        expected.push_back(ConvertFrame(engine.get(), status));
        ASSERT_EQ(status, OSTREL_OK);
    }
    // Per round: all make their engines at once, all destroy them at once, all are done.
    std::vector<std::unique_ptr<threading::Rendezvous>> gates;
    for (unsigned g = 0; g < 3 * kRounds; ++g) {
        gates.push_back(std::make_unique<threading::Rendezvous>(kThreads));
    }
    std::atomic<unsigned> failed{0}, wrong{0}, converted{0};
    std::atomic<unsigned> keptApartment{0}, balanced{0};
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            const HostState state = StateOfThread(t);
            for (unsigned round = 0; round < kRounds; ++round) {
                gates[3 * round]->ArriveAndWait();
                auto engine = std::make_unique<Engine>();
                failed += host_state::Apply(engine->get(), state) != OSTREL_OK;
                for (unsigned frame = 0; frame < kFrames; ++frame) {
                    if (frame % 3 == 2) {
                        ostrel_engine_set_table_unit(engine->get(), (state.unit + 1) % 4);
                        ostrel_engine_set_table_unit(engine->get(), state.unit);
                    }
                    ostrel_status status = OSTREL_OK;
                    const std::vector<std::uint8_t> answer = ConvertFrame(engine->get(), status);
                    failed += status != OSTREL_OK;
                    wrong += status == OSTREL_OK && answer != expected[t];
                    ++converted;
                }
                gates[3 * round + 1]->ArriveAndWait();
                engine.reset();
                gates[3 * round + 2]->ArriveAndWait();
            }
            // The host's own initialisation is still there, and only it.
            keptApartment += ThreadHasApartment();
            CoUninitialize();
            balanced += !ThreadHasApartment();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(converted, kThreads * kRounds * kFrames);
    EXPECT_EQ(failed, 0u);
    EXPECT_EQ(wrong, 0u) << "frames converted with status 0 but not as a lone engine does";
    EXPECT_EQ(keptApartment, kThreads) << "the library left a thread without its COM";
    EXPECT_EQ(balanced, kThreads) << "the library left a thread with an extra COM entry";
}

// A thread without COM can't reach the server once the library's apartment is another thread's:
// it is told so, and the engine is not given up; conversions from current tables need no COM.
TEST(CInterfaceThreads, AThreadWithoutComIsToldWhatToDo) {
    Engine loaded;
    const HostState state = StateOfThread(0);
    ASSERT_EQ(host_state::Apply(loaded.get(), state), OSTREL_OK) << "is the simulator registered?";
    float expected = 0;
    ASSERT_EQ(ostrel_counts_to_temp(loaded.get(), 0, 28800, &expected, nullptr, 0), OSTREL_OK);
    ostrel_status withoutCom = OSTREL_OK, lookUp = OSTREL_OK, withCom = OSTREL_OK;
    float converted = 0;
    std::thread([&] {
        {
            Engine engine;
            withoutCom = ostrel_engine_set_factory_cal(engine.get(), 0, &*state.records[0]);
            lookUp = ostrel_counts_to_temp(loaded.get(), 0, 28800, &converted, nullptr, 0);
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            withCom = ostrel_engine_set_factory_cal(engine.get(), 0, &*state.records[0]);
        }
        CoUninitialize();
    }).join();
    EXPECT_EQ(withoutCom, OSTREL_WRONG_THREAD);
    EXPECT_NE(std::string(ostrel_status_text(withoutCom)).find("CoInitializeEx"),
              std::string::npos);
    EXPECT_EQ(lookUp, OSTREL_OK);
    EXPECT_EQ(converted, expected);
    EXPECT_EQ(withCom, OSTREL_OK) << "the engine was given up after the refusal";
}

} // namespace
