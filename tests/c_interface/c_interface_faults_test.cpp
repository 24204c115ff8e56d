// Server faults and random call sequences through the C interface: whatever failed before, every
// OSTREL_OK answer equals the one a new engine gives for what the host set, and an engine that
// can't promise that refuses with OSTREL_RELOAD_NEEDED until the host sets it again.
#include <ostrel.h>
#include <ostrel_c.h>
#include <server_slots.h>

#include <functional>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host_state.h"
#include "simulator_control.h"

namespace {

using host_state::Engine;
using host_state::HostState;
using host_state::Query;

constexpr unsigned long kCalibrationSlots[] = {
    kSlotSetAux,           kSlotComputeLut,       kSlotSetObjectParams,    kSlotTempToCounts,
    kSlotIsReady,          kSlotLoadFactoryKind2, kSlotSetIntegrationTime, kSlotLoadFactory,
    kSlotIntegrationTimeAt};

// A host's call: a change of what it set, or a question.
struct Call {
    std::string name;
    std::function<ostrel_status(ostrel_engine*)> set;
    std::function<void(HostState&)> change; // what set changes once it succeeds
    std::optional<Query> ask;
};

Call SetRecord(std::uint32_t preset, const ostrel_factory_cal& record, const char* which) {
    return {"record " + std::string(which) + " into preset " + std::to_string(preset),
            [=](ostrel_engine* e) { return ostrel_engine_set_factory_cal(e, preset, &record); },
            [=](HostState& s) { s.records[preset] = record; }, std::nullopt};
}

Call SetParams(const ostrel_object_params& params, const char* which) {
    return {"parameters " + std::string(which),
            [=](ostrel_engine* e) { return ostrel_engine_set_object_params(e, &params); },
            [=](HostState& s) { s.params = params; }, std::nullopt};
}

Call SetUnit(std::uint32_t unit) {
    return {"table unit " + std::to_string(unit),
            [=](ostrel_engine* e) { return ostrel_engine_set_table_unit(e, unit); },
            [=](HostState& s) { s.unit = unit; }, std::nullopt};
}

Call Ask(const Query& query) {
    return {query.name, nullptr, nullptr, query};
}

// Four presets loaded with the sample, preset 1 with the second record.
HostState Loaded() {
    const host_state::Samples& samples = host_state::LoadSamples();
    HostState state;
    state.records = {samples.recordA, samples.recordB, samples.recordA, samples.recordA};
    state.params = samples.paramsA;
    return state;
}

Query Named(const HostState& state, const std::string& name) {
    for (const Query& query : host_state::QueriesFor(state)) {
        if (query.name == name) {
            return query;
        }
    }
    throw std::logic_error("no query " + name);
}

class CInterfaceFaults : public testing::Test {
protected:
    void SetUp() override {
        mCalibration = GetOstrelCal();
        mControl = simulator::ControlOf(mCalibration);
        ASSERT_TRUE(mControl) << "is the simulator registered?";
    }
    void TearDown() override {
        for (unsigned long slot : kCalibrationSlots) {
            mControl->SetFault(slot, 0);
        }
        mControl.Reset();
    }

    // Makes the call with the fault set (slot 0: none), then checks every answer of the engine
    // against a new engine's for what the host set. Returns the call's status.
    ostrel_status Step(ostrel_engine* engine, HostState& state, const Call& call,
                       unsigned long slot, long mode, unsigned long passes) {
        const std::string context = call.name + ", slot " + std::to_string(slot) + " mode " +
                                    std::to_string(mode) + " after " + std::to_string(passes);
        if (slot != 0) {
            EXPECT_EQ(mControl->SetFaultAfter(slot, mode, passes), S_OK);
        }
        std::vector<std::uint8_t> answer;
        const ostrel_status status = call.set ? call.set(engine) : call.ask->ask(engine, answer);
        if (slot != 0) {
            EXPECT_EQ(mControl->SetFault(slot, 0), S_OK);
        }
        if (call.set && status == OSTREL_OK) {
            call.change(state);
        }
        if (call.ask) {
            Compare(*call.ask, status, answer, state, context);
        }
        if (!CheckEveryAnswer(engine, state, context)) {
            Recover(engine, state, context);
        }
        return status;
    }

    // False when the engine refused something and must be set again.
    bool CheckEveryAnswer(ostrel_engine* engine, const HostState& state,
                          const std::string& context) {
        bool usable = true;
        for (const Query& query : host_state::QueriesFor(state)) {
            std::vector<std::uint8_t> answer;
            const ostrel_status status = query.ask(engine, answer);
            if (status == OSTREL_RELOAD_NEEDED) {
                usable = false;
                continue;
            }
            EXPECT_EQ(status, OSTREL_OK) << query.name << " after " << context;
            Compare(query, status, answer, state, context);
        }
        return usable;
    }

    // Sets again what the engine refuses: the parameters first, then the refusing presets.
    void Recover(ostrel_engine* engine, const HostState& state, const std::string& context) {
        if (state.params) {
            ASSERT_EQ(ostrel_engine_set_object_params(engine, &*state.params), OSTREL_OK);
        }
        for (std::uint32_t p = 0; p < 4; ++p) {
            float temp = 0;
            if (state.records[p] && ostrel_counts_to_temp(engine, p, 20000, &temp, nullptr, 0) ==
                                        OSTREL_RELOAD_NEEDED) {
                ASSERT_EQ(ostrel_engine_set_factory_cal(engine, p, &*state.records[p]), OSTREL_OK);
            }
        }
        EXPECT_TRUE(CheckEveryAnswer(engine, state, "recovery from " + context));
    }

    void Compare(const Query& query, ostrel_status status, const std::vector<std::uint8_t>& answer,
                 const HostState& state, const std::string& context) {
        if (status != OSTREL_OK) {
            return;
        }
        std::vector<std::uint8_t> expected;
        ASSERT_EQ(mReferences.For(state).Answer(query, expected), OSTREL_OK) << query.name;
        EXPECT_EQ(answer, expected)
            << query.name << " answered OSTREL_OK, but wrongly, after " << context;
        ++mCompared;
    }

    COstrelCal mCalibration;
    Microsoft::WRL::ComPtr<ICamSimControl> mControl;
    host_state::References mReferences;
    unsigned mCompared = 0;
};

// A slot failing in both ways, from its first call and from its third, during each kind of call
// that reaches the server.
class CInterfaceSlotFaults : public CInterfaceFaults,
                             public testing::WithParamInterface<unsigned long> {};

TEST_P(CInterfaceSlotFaults, NoAnswerIsValidAndWrong) {
    const unsigned long slot = GetParam();
    const host_state::Samples& samples = host_state::LoadSamples();
    const HostState loaded = Loaded();
    unsigned failedCalls = 0;
    for (long mode : {1L, 2L}) {
        for (unsigned long passes : {0UL, 2UL}) {
            Engine engine;
            HostState state = loaded;
            ASSERT_EQ(host_state::Apply(engine.get(), state), OSTREL_OK);
            const Call calls[] = {
                SetRecord(0, samples.recordB, "B"),
                Ask(Named(state, "range at 5000 us of preset 1")),
                SetParams(samples.paramsB, "B"),
                SetRecord(2, samples.recordA, "A"),
                Ask(Named(state, "frame per pixel")),
                Ask(Named(state, "30 C as counts of preset 3")),
                Ask(Named(state, "integration times of preset 2")),
            };
            for (const Call& call : calls) {
                failedCalls += Step(engine.get(), state, call, slot, mode, passes) != OSTREL_OK;
            }
        }
    }
    // The sample records are of kind 1: nothing calls CalLoadFactoryKind2.
    if (slot == kSlotLoadFactoryKind2) {
        EXPECT_EQ(failedCalls, 0u);
    } else {
        EXPECT_GT(failedCalls, 0u) << "the fault did not reach the calls";
    }
    EXPECT_GT(mCompared, 300u);
}

INSTANTIATE_TEST_SUITE_P(Slots, CInterfaceSlotFaults, testing::ValuesIn(kCalibrationSlots));

// Random host calls, half of them with a random fault, each answer compared with a new engine's.
class CInterfaceSequences : public CInterfaceFaults,
                            public testing::WithParamInterface<unsigned> {};

TEST_P(CInterfaceSequences, AgreeWithANewEngineAfterEveryCall) {
    const host_state::Samples& samples = host_state::LoadSamples();
    std::mt19937 random(GetParam());
    const auto pick = [&](unsigned n) {
        return static_cast<unsigned>(std::uniform_int_distribution<unsigned>(0, n - 1)(random));
    };
    Engine engine;
    HostState state = Loaded();
    ASSERT_EQ(host_state::Apply(engine.get(), state), OSTREL_OK);
    for (int step = 0; step < 40; ++step) {
        std::vector<Call> calls = {
            SetRecord(pick(4), pick(2) ? samples.recordA : samples.recordB, "A or B"),
            SetParams(pick(2) ? samples.paramsA : samples.paramsB, "A or B"),
            SetUnit(pick(4)),
        };
        for (const Query& query : host_state::QueriesFor(state)) {
            calls.push_back(Ask(query));
        }
        const Call& call = calls[pick(static_cast<unsigned>(calls.size()))];
        const bool faulty = pick(2) == 0;
        const unsigned long slot = faulty ? kCalibrationSlots[pick(9)] : 0;
        Step(engine.get(), state, call, slot, 1 + pick(2), pick(4));
    }
    EXPECT_GT(mCompared, 500u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, CInterfaceSequences, testing::Values(1u, 2u, 3u));

} // namespace
