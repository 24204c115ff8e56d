// What every function of the C interface does at its boundary: nothing thrown gets through, an
// engine's false becomes the status that says why, and a failure is kept for ostrel_last_error.
#pragma once

#include <ostrel.h>
#include <ostrel_c.h>

#include <exception>
#include <new>

#include "failure_note.h"
#include "last_error.h"
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

// Runs body, the work of the C function named `function`, which returns a status, and turns
// whatever it throws into one.
template <class Body> ostrel_status Guarded(const char* function, Body body) noexcept {
    failure_note::Clear();
    ostrel_status status = OSTREL_SERVER_CALL_FAILED;
    try {
        status = body();
    } catch (const std::bad_alloc&) {
        status = OSTREL_OUT_OF_MEMORY;
    } catch (...) {
        failure_note::Write("an unexpected exception");
    }
    if (status != OSTREL_OK) {
        return Failed(function, status);
    }
    failure_note::Clear();
    return OSTREL_OK;
}

// The same for a body which may reach the server: it runs inside a ServerSession, and not at all
// on a thread that can't reach the server.
template <class Body> ostrel_status WithServer(const char* function, Body body) noexcept {
    return Guarded(function, [&]() -> ostrel_status {
        const ServerSession session;
        return session.Refusal() != OSTREL_OK ? session.Refusal() : body();
    });
}

} // namespace c_interface
