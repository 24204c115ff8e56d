#include <ostrel.h>

#include "host_connection.h"
#include "module_state.h"

COstrel::CMarshalProxy::CMarshalProxy(IOstrelHost* p) : mHost(p) {
    ostrelEnter();
    if (mHost != nullptr) {
        mHost->AddRef();
    } else {
        mHost = HostProxyForThisThread();
    }
}

COstrel::CMarshalProxy::CMarshalProxy() : CMarshalProxy(nullptr) {}

COstrel::CMarshalProxy::CMarshalProxy(const CMarshalProxy& other) : mHost(other.mHost) {
    ostrelEnter();
    if (mHost != nullptr) {
        mHost->AddRef();
    }
}

COstrel::CMarshalProxy::~CMarshalProxy() {
    if (mHost != nullptr) {
        mHost->Release();
    }
    mHost = nullptr;
    ostrelLeave();
}

COstrel::CMarshalProxy& COstrel::CMarshalProxy::operator=(const CMarshalProxy& other) {
    mHost = other.mHost;
    return *this;
}

IOstrelHost* COstrel::CMarshalProxy::operator->() {
    return mHost;
}

COstrel::COstrel() : mHost(nullptr), mThreadId(0) {}

COstrel::COstrel(const COstrel& other) : mHost(nullptr), mThreadId(0) {
    TakeFrom(other);
}

COstrel::~COstrel() {
    ReleaseOstrelHost(mHost);
}

COstrel& COstrel::operator=(const COstrel& other) {
    IOstrelHost* previous = mHost;
    TakeFrom(other);
    ReleaseOstrelHost(previous);
    return *this;
}

// The pointer taken from other may be called directly only on other's thread; on any other
// thread the handle swaps it for a proxy of its own.
void COstrel::TakeFrom(const COstrel& other) {
    IOstrelHost* taken = other.mHost;
    if (taken != nullptr) {
        taken->AddRef();
        if (gOstrelHost != nullptr) {
            ++gHostRefs;
        }
    }
    mHost = taken;
    mThreadId = other.mThreadId;
    if (mHost == nullptr || GetCurrentThreadId() == mThreadId) {
        return;
    }
    if (gInterfaceTable != nullptr) {
        mHost = HostProxyForThisThread();
        ++gHostRefs;
    }
    ReleaseOstrelHost(taken);
    mThreadId = GetCurrentThreadId();
}

COstrel::CMarshalProxy COstrel::operator->() {
    Get();
    return CMarshalProxy(GetCurrentThreadId() == mThreadId ? mHost : nullptr);
}

bool COstrel::Get() {
    if (mHost == nullptr) {
        mHost = ConnectOstrel();
        mThreadId = gHostThreadId;
    }
    return mHost != nullptr;
}

void COstrel::Release() {
    ReleaseOstrelHost(mHost);
    mHost = nullptr;
    mThreadId = 0;
}

COstrel& COstrel::operator=(int v) {
    if (v == 0) {
        Release();
    }
    return *this;
}

bool COstrel::operator==(int v) const {
    return v == 0 && mHost == nullptr;
}

bool COstrel::operator!=(int v) const {
    return v == 0 && mHost != nullptr;
}

COstrel::operator bool() const {
    return mHost != nullptr;
}

COstrel GetOstrel() {
    COstrel handle;
    handle.mHost = ConnectOstrel();
    handle.mThreadId = gHostThreadId;
    return handle;
}
