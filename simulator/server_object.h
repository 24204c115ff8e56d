// IUnknown for the server's objects: their server interface and the simulator's controls, a
// thread-safe count, and a server reference that keeps the process running while the object
// lives.
#pragma once

#include <unknwn.h>

#include <atomic>

#include "server_lifetime.h"
#include "simulator_control.h"

namespace camsim {

template <typename Derived, typename Interface>
class ServerObject : public Interface, public SimulatorControl {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) final {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (iid == IID_IUnknown || iid == __uuidof(Interface)) {
            *object = static_cast<Interface*>(this);
        } else if (iid == IID_ICamSimControl) {
            *object = static_cast<ICamSimControl*>(this);
        } else {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() final { return ++mReferences; }
    ULONG STDMETHODCALLTYPE Release() final {
        const ULONG left = --mReferences;
        if (left == 0) {
            delete static_cast<Derived*>(this);
        }
        return left;
    }

protected:
    // Created holding the creator's reference.
    ServerObject() = default;
    ~ServerObject() = default;

private:
    std::atomic<ULONG> mReferences{1};
    ServerReference mServerReference;
};

} // namespace camsim
