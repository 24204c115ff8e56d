// What an ostrel_engine is: the C++ engine, and what the C interface keeps beside it so that an
// answer it calls valid is always the one a fresh engine gives for what the host set.
#pragma once

#include <ostrel.h>
#include <ostrel_c.h>

struct ostrel_engine {
    vz::CBroadCal engine;
    // The host has set object parameters: a newly loaded preset's object is given them too.
    bool paramsSet = false;
    // The object parameters' last set failed part of the way: which objects hold which values
    // is unknown until a set succeeds.
    bool paramsLost = false;
    // The preset's last load failed (or its object could not be loaded again after a range
    // query): the object may hold part of a record until a load succeeds.
    bool presetLost[vz::kPresetCount] = {};
};

namespace c_interface {

// OSTREL_RELOAD_NEEDED while the preset's object may not hold what the host set.
inline ostrel_status PresetRefusal(const ostrel_engine& engine, unsigned preset) {
    return engine.paramsLost || engine.presetLost[preset] ? OSTREL_RELOAD_NEEDED : OSTREL_OK;
}

} // namespace c_interface
