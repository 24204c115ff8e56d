#include "host_connection.h"

#include <vz/log.h>

#include <cstdio>

#include "com_apartment.h"
#include "failure_note.h"
#include "global_lock.h"
#include "module_state.h"
#include "pleora_check.h"

IGlobalInterfaceTable* gInterfaceTable = nullptr;
DWORD gHostCookie = 0;
DWORD gHostThreadId = 0;

namespace {

// Serialises the first connection and the last release between threads, so that no thread
// takes a reference to a connection another thread is tearing down. A thread alone makes the
// same calls as without it.
constinit LazySection gConnectionSection;

bool MeetsMinimumVersion(DWORD major, DWORD minor, DWORD build) {
    return major > 5 || (major == 5 && (minor > 90 || (minor == 90 && build >= 4)));
}

void NoteOldServer(ULONG major, ULONG minor, ULONG build) noexcept {
    char text[80];
    std::snprintf(text, sizeof text, "the camera server is version %lu.%lu.%lu, older than 5.90.4",
                  major, minor, build);
    failure_note::Write(text);
}

IOstrelHost* Fail(ConnectionFailure failure) {
    gLastConnectionFailure = failure;
    return nullptr;
}

// Gives up a connection attempt. The apartment entered for it stays.
IOstrelHost* Abandon(ConnectionFailure failure) {
    gOstrelHost->Release();
    gOstrelHost = nullptr;
    return Fail(failure);
}

} // namespace

IOstrelHost* ConnectOstrel() {
    failure_note::Clear();
    const SectionGuard connecting(gConnectionSection);
    if (gOstrelHost != nullptr) {
        ++gHostRefs;
        gOstrelHost->AddRef();
        return gOstrelHost;
    }
    if (!EnsureComApartment()) {
        return Fail(ConnectionFailure::kWrongApartment);
    }
    HRESULT hr = CoCreateInstance(CLSID_OstrelHost, nullptr, CLSCTX_LOCAL_SERVER, IID_IOstrelHost,
                                  reinterpret_cast<void**>(&gOstrelHost));
    if (FAILED(hr)) {
        gOstrelHost = nullptr;
        failure_note::WriteFailedCall("CoCreateInstance of the camera server", hr);
        return Fail(ConnectionFailure::kNoServer);
    }
    ULONG major = 0, minor = 0, build = 0;
    hr = gOstrelHost->GetServerVersion(&major, &minor, &build);
    if (FAILED(hr)) {
        failure_note::WriteFailedCall("GetServerVersion", hr);
        return Abandon(ConnectionFailure::kNoServer);
    }
    gServerMajor = major;
    gServerMinor = minor;
    gServerBuild = build;
    if (!MeetsMinimumVersion(major, minor, build)) {
        NoteOldServer(major, minor, build);
        return Abandon(ConnectionFailure::kRefused);
    }
    if (!PleoraCompatible(major, minor, ReadCyCamLibVersion().dwFileVersionMS)) {
        if (vz::gLog->getVerbose()) {
            vz::gLog->WriteLine(
                L"Pleora / Ostrel incompatibility detected, refusing to create ostrel instance");
        }
        failure_note::Write("the camera server's version does not match its CyCamLib.dll");
        return Abandon(ConnectionFailure::kRefused);
    }
    hr = CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                          IID_IGlobalInterfaceTable, reinterpret_cast<void**>(&gInterfaceTable));
    if (FAILED(hr)) {
        gInterfaceTable = nullptr;
        failure_note::WriteFailedCall("CoCreateInstance of the global interface table", hr);
        return Abandon(ConnectionFailure::kNoServer);
    }
    hr = gInterfaceTable->RegisterInterfaceInGlobal(gOstrelHost, IID_IOstrelHost, &gHostCookie);
    if (FAILED(hr)) {
        gInterfaceTable->Release();
        gInterfaceTable = nullptr;
        failure_note::WriteFailedCall("RegisterInterfaceInGlobal", hr);
        return Abandon(ConnectionFailure::kNoServer);
    }
    gLastConnectionFailure = ConnectionFailure::kNone;
    gHostRefs = 1;
    gHostThreadId = GetCurrentThreadId();
    OstrelSection();
    gOstrelHost->AddRef();
    return gOstrelHost;
}

void ReleaseOstrelHost(IOstrelHost* host) {
    if (host == nullptr) {
        return;
    }
    host->Release();
    if (gOstrelHost == nullptr || gHostRefs.fetch_sub(1) != 1) {
        return;
    }
    // Another thread may have connected again between the count's fall and this point.
    const SectionGuard releasing(gConnectionSection);
    if (gOstrelHost == nullptr || gHostRefs != 0) {
        return;
    }
    gInterfaceTable->RevokeInterfaceFromGlobal(gHostCookie);
    gInterfaceTable->Release();
    gInterfaceTable = nullptr;
    gOstrelHost->Release();
    gOstrelHost = nullptr;
    LeaveComApartmentIfUnused();
}

IOstrelHost* HostProxyForThisThread() {
    IOstrelHost* proxy = nullptr;
    if (gInterfaceTable == nullptr ||
        FAILED(gInterfaceTable->GetInterfaceFromGlobal(gHostCookie, IID_IOstrelHost,
                                                       reinterpret_cast<void**>(&proxy)))) {
        return nullptr;
    }
    return proxy;
}
