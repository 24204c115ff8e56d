// What a host has set on a C engine, and the answers a new engine given the same gives: every
// OSTREL_OK answer of an engine, whatever happened to it before, must equal those.
#pragma once

#include <ostrel_c.h>

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host_state {

// An engine owned for the test's scope.
class Engine {
public:
    Engine();
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ostrel_engine* get() const { return mEngine; }

private:
    ostrel_engine* mEngine = nullptr;
};

struct HostState {
    std::array<std::optional<ostrel_factory_cal>, 4> records;
    std::optional<ostrel_object_params> params;
    std::uint32_t unit = OSTREL_CELSIUS;
    std::array<std::uint8_t, 4> active = {1, 1, 1, 1};
};

// Sets state on an engine as a host would: records in preset order, then parameters, unit and
// active presets. OSTREL_OK or the first failure.
ostrel_status Apply(ostrel_engine* engine, const HostState& state);

// One question to an engine; its answer as bytes, compared bit for bit.
struct Query {
    std::string name;
    std::function<ostrel_status(ostrel_engine*, std::vector<std::uint8_t>&)> ask;
};
// Every question worth asking of an engine in this state: conversions of a frame through each
// loaded preset and per pixel, single counts and temperatures, both ranges.
std::vector<Query> QueriesFor(const HostState& state);

// The answers of a new engine given the state, each asked once and kept.
class Reference {
public:
    explicit Reference(const HostState& state);
    ostrel_status Answer(const Query& query, std::vector<std::uint8_t>& answer);

private:
    Engine mEngine;
    ostrel_status mApplied;
    std::map<std::string, std::pair<ostrel_status, std::vector<std::uint8_t>>> mAnswers;
};

// The references of every state met so far, so that each state is set up once.
class References {
public:
    Reference& For(const HostState& state);

private:
    std::map<std::string, std::unique_ptr<Reference>> mKnown;
};

// The sample records the simulator ships, and a second of each that converts differently.
struct Samples {
    ostrel_factory_cal recordA, recordB;
    ostrel_object_params paramsA, paramsB;
};
const Samples& LoadSamples();

} // namespace host_state
