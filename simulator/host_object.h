// The server's main object: reports the configured version.
#pragma once

#include <ostrel_server.h>

#include "server_object.h"
#include "server_version.h"

namespace camsim {

class HostObject final : public ServerObject<HostObject, IOstrelHost> {
public:
    // Reads the configured version once, so a setting changed later affects new objects only.
    HostObject();

// The makers' methods this simulator does not provide.
#define CAMSIM_RESERVED_SLOT(number)                                                               \
    HRESULT STDMETHODCALLTYPE Reserved##number() override {                                        \
        return E_NOTIMPL;                                                                          \
    }
#include "host_reserved_slots.inc"
#undef CAMSIM_RESERVED_SLOT

    HRESULT STDMETHODCALLTYPE GetServerVersion(ULONG* major, ULONG* minor, ULONG* build) override;

private:
    ServerVersion mVersion;
};

} // namespace camsim
