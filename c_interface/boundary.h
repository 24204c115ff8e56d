// What every function of the C interface does at its boundary: nothing thrown gets through, and
// an engine's false becomes the status that says why.
#pragma once

#include <ostrel.h>
#include <ostrel_c.h>

#include <exception>
#include <new>

#include "server_session.h"

namespace c_interface {

inline bool ValidPreset(std::uint32_t preset) {
    return preset < vz::kPresetCount;
}
inline bool ValidUnit(std::uint32_t unit) {
    return unit <= OSTREL_RANKINE;
}
inline bool ValidType(std::uint32_t type) {
    return type <= OSTREL_DOUBLE;
}

// OSTREL_OK for true; for false, whether the engine never reached its calibration service or the
// server failed a call. The probe's result is kept by the engine, so asking makes no new call.
inline ostrel_status EngineResult(vz::CBroadCal& engine, bool ok) {
    if (ok) {
        return OSTREL_OK;
    }
    return engine.isAvailable() ? OSTREL_SERVER_CALL_FAILED : OSTREL_NOT_READY;
}

// Runs body, which returns a status, and turns whatever it throws into one.
template <class Body> ostrel_status Guarded(Body body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return OSTREL_OUT_OF_MEMORY;
    } catch (...) {
        return OSTREL_SERVER_CALL_FAILED;
    }
}

// Runs body, which may reach the server, inside a ServerSession; on a thread that can't reach
// the server, body does not run.
template <class Body> ostrel_status WithServer(Body body) noexcept {
    return Guarded([&]() -> ostrel_status {
        const ServerSession session;
        return session.Refusal() != OSTREL_OK ? session.Refusal() : body();
    });
}

} // namespace c_interface
