#include "host_state.h"

#include <cstring>
#include <stdexcept>

namespace host_state {
namespace {

template <class T> void Append(std::vector<std::uint8_t>& bytes, const T* values, std::size_t n) {
    const auto* first = reinterpret_cast<const std::uint8_t*>(values);
    bytes.insert(bytes.end(), first, first + n * sizeof(T));
}

// Counts across the whole detector range and beyond the calibrated one at both ends.
std::vector<std::uint16_t> Frame() {
    std::vector<std::uint16_t> counts(97);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        counts[i] = static_cast<std::uint16_t>(i * 683);
    }
    return counts;
}

// A preset map may name only active presets; this one names all four.
bool AllActiveAndLoaded(const HostState& state) {
    for (unsigned p = 0; p < 4; ++p) {
        if (!state.active[p] || !state.records[p]) {
            return false;
        }
    }
    return true;
}

} // namespace

Engine::Engine() {
    if (ostrel_engine_create(&mEngine) != OSTREL_OK) {
        throw std::runtime_error("no engine");
    }
}

Engine::~Engine() {
    ostrel_engine_destroy(mEngine);
}

ostrel_status Apply(ostrel_engine* engine, const HostState& state) {
    for (std::uint32_t p = 0; p < 4; ++p) {
        if (state.records[p]) {
            if (const ostrel_status s =
                    ostrel_engine_set_factory_cal(engine, p, &*state.records[p])) {
                return s;
            }
        }
    }
    if (state.params) {
        if (const ostrel_status s = ostrel_engine_set_object_params(engine, &*state.params)) {
            return s;
        }
    }
    if (const ostrel_status s = ostrel_engine_set_table_unit(engine, state.unit)) {
        return s;
    }
    return ostrel_engine_set_active_presets(engine, state.active.data());
}

std::vector<Query> QueriesFor(const HostState& state) {
    std::vector<Query> queries;
    for (std::uint32_t p = 0; p < 4; ++p) {
        if (!state.records[p]) {
            continue;
        }
        const std::string preset = " of preset " + std::to_string(p);
        queries.push_back({"frame" + preset, [p](ostrel_engine* e, std::vector<std::uint8_t>& a) {
                               const std::vector<std::uint16_t> in = Frame();
                               std::vector<float> out(in.size());
                               std::vector<std::uint8_t> status(in.size());
                               const ostrel_status s = ostrel_convert_uniform(
                                   e, p, in.data(), OSTREL_UINT16, out.data(), OSTREL_FLOAT,
                                   static_cast<std::uint32_t>(in.size()), status.data(),
                                   OSTREL_CELSIUS);
                               Append(a, out.data(), out.size());
                               Append(a, status.data(), status.size());
                               return s;
                           }});
        queries.push_back(
            {"count 28800 in F" + preset, [p](ostrel_engine* e, std::vector<std::uint8_t>& a) {
                 float temp = 0;
                 std::uint8_t status = 9;
                 const ostrel_status s =
                     ostrel_counts_to_temp(e, p, 28800, &temp, &status, OSTREL_FAHRENHEIT);
                 Append(a, &temp, 1);
                 Append(a, &status, 1);
                 return s;
             }});
        queries.push_back(
            {"30 C as counts" + preset, [p](ostrel_engine* e, std::vector<std::uint8_t>& a) {
                 std::uint16_t counts = 0;
                 const ostrel_status s =
                     ostrel_temp_to_counts(e, p, 30.0f, OSTREL_CELSIUS, &counts);
                 Append(a, &counts, 1);
                 return s;
             }});
        queries.push_back(
            {"integration times" + preset, [p](ostrel_engine* e, std::vector<std::uint8_t>& a) {
                 std::uint32_t times[2] = {};
                 const ostrel_status s = ostrel_integration_time_range(e, p, &times[0], &times[1]);
                 Append(a, times, 2);
                 return s;
             }});
        queries.push_back(
            {"range at 5000 us" + preset, [p](ostrel_engine* e, std::vector<std::uint8_t>& a) {
                 float range[2] = {};
                 const ostrel_status s = ostrel_temp_range(e, p, 5000, &range[0], &range[1]);
                 Append(a, range, 2);
                 return s;
             }});
    }
    if (AllActiveAndLoaded(state)) {
        queries.push_back({"frame per pixel", [](ostrel_engine* e, std::vector<std::uint8_t>& a) {
                               const std::vector<std::uint16_t> in = Frame();
                               std::vector<std::uint8_t> map(in.size());
                               for (std::size_t i = 0; i < map.size(); ++i) {
                                   map[i] = static_cast<std::uint8_t>(i % 4);
                               }
                               std::vector<double> out(in.size());
                               const ostrel_status s = ostrel_convert_mapped(
                                   e, map.data(), in.data(), OSTREL_UINT16, out.data(),
                                   OSTREL_DOUBLE, static_cast<std::uint32_t>(in.size()), nullptr,
                                   OSTREL_KELVIN);
                               Append(a, out.data(), out.size());
                               return s;
                           }});
    }
    return queries;
}

Reference::Reference(const HostState& state) : mApplied(Apply(mEngine.get(), state)) {}

ostrel_status Reference::Answer(const Query& query, std::vector<std::uint8_t>& answer) {
    if (mApplied != OSTREL_OK) {
        return mApplied;
    }
    auto known = mAnswers.find(query.name);
    if (known == mAnswers.end()) {
        std::vector<std::uint8_t> bytes;
        const ostrel_status status = query.ask(mEngine.get(), bytes);
        known = mAnswers.emplace(query.name, std::make_pair(status, std::move(bytes))).first;
    }
    answer = known->second.second;
    return known->second.first;
}

Reference& References::For(const HostState& state) {
    std::vector<std::uint8_t> key;
    for (const auto& record : state.records) {
        key.push_back(record.has_value());
        if (record) {
            Append(key, &*record, 1);
        }
    }
    key.push_back(state.params.has_value());
    if (state.params) {
        Append(key, &*state.params, 1);
    }
    Append(key, &state.unit, 1);
    Append(key, state.active.data(), state.active.size());
    std::unique_ptr<Reference>& known = mKnown[std::string(key.begin(), key.end())];
    if (!known) {
        known = std::make_unique<Reference>(state);
    }
    return *known;
}

const Samples& LoadSamples() {
    static const Samples samples = [] {
        Samples loaded{};
        Engine engine;
        if (ostrel_engine_load_factory_cal(engine.get(), 0,
                                           OSTREL_SAMPLES_DIR "/factory_cal.txt") ||
            ostrel_engine_load_object_params(engine.get(),
                                             OSTREL_SAMPLES_DIR "/object_params.txt") ||
            ostrel_engine_get_factory_cal(engine.get(), 0, &loaded.recordA) ||
            ostrel_engine_get_object_params(engine.get(), &loaded.paramsA)) {
            throw std::runtime_error("the samples don't load: is the simulator registered?");
        }
        loaded.recordB = loaded.recordA;
        loaded.recordB.integrationTime = 3000.0f;
        loaded.recordB.calAux = 26.0f;
        loaded.paramsB = loaded.paramsA;
        loaded.paramsB.objFactorA = 0.5f;
        loaded.paramsB.objTempA = 310.0f;
        return loaded;
    }();
    return samples;
}

} // namespace host_state
