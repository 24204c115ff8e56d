// A class object that creates one new `Object` per request. It lives as long as the server
// loop's registration, so its own reference count is not tracked.
#pragma once

#include <unknwn.h>

#include <new>

#include "server_lifetime.h"
#include <wrl/client.h>

namespace camsim {

template <typename Object> class ClassFactory final : public IClassFactory {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (iid == IID_IUnknown || iid == IID_IClassFactory) {
            *object = static_cast<IClassFactory*>(this);
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        // Created holding one reference, which the owner takes over through its out-parameter
        // (MinGW's ComPtr::Attach would add a reference of its own).
        Microsoft::WRL::ComPtr<Object> created;
        *created.GetAddressOf() = new (std::nothrow) Object;
        if (!created) {
            return E_OUTOFMEMORY;
        }
        return created->QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock) {
            AcquireServerReference();
        } else {
            ReleaseServerReference();
        }
        return S_OK;
    }
};

} // namespace camsim
