#include "local_server.h"

#include <optional>

#include <ostrel_server.h>

#include "calibration_object.h"
#include "class_factory.h"
#include "host_object.h"
#include "server_lifetime.h"
#include <unique_resource.h>

namespace camsim {

namespace {

// Long enough for the client that started the server to create its object.
constexpr UINT kIdleTimeoutMs = 5000;

ClassFactory<HostObject> gHostFactory;
ClassFactory<CalibrationObject> gCalibrationFactory;

// One class object registered with COM until revoked or destroyed.
class ClassRegistration {
public:
    ClassRegistration() = default;
    ~ClassRegistration() { Revoke(); }
    ClassRegistration(const ClassRegistration&) = delete;
    ClassRegistration& operator=(const ClassRegistration&) = delete;

    HRESULT Register(REFCLSID clsid, IUnknown* factory) {
        const HRESULT hr = CoRegisterClassObject(clsid, factory, CLSCTX_LOCAL_SERVER,
                                                 REGCLS_MULTIPLEUSE, &mCookie);
        mRegistered = SUCCEEDED(hr);
        return hr;
    }
    void Revoke() {
        if (mRegistered) {
            CoRevokeClassObject(mCookie);
            mRegistered = false;
        }
    }

private:
    DWORD mCookie = 0;
    bool mRegistered = false;
};

// Both classes as the running loop serves them. The last release revokes them at once, so
// that a new activation starts a new server rather than reaching this one as it exits.
class ServedClasses {
public:
    ServedClasses() { mRunning = this; }
    ~ServedClasses() { mRunning = nullptr; }
    ServedClasses(const ServedClasses&) = delete;
    ServedClasses& operator=(const ServedClasses&) = delete;

    HRESULT Register() {
        const HRESULT hr = mHost.Register(CLSID_OstrelHost, &gHostFactory);
        return FAILED(hr) ? hr : mCalibration.Register(CLSID_OsCalibration, &gCalibrationFactory);
    }

    // Ends the loop; runs on the loop's thread, from the last release or the idle timer.
    static void Stop() {
        if (mRunning != nullptr) {
            mRunning->mHost.Revoke();
            mRunning->mCalibration.Revoke();
        }
        PostQuitMessage(0);
    }

private:
    static inline ServedClasses* mRunning = nullptr;
    ClassRegistration mHost;
    ClassRegistration mCalibration;
};

void KillThreadTimer(UINT_PTR timer) {
    KillTimer(nullptr, timer);
}
using UniqueThreadTimer = owners::UniqueResource<owners::NullEmpty<UINT_PTR, &KillThreadTimer>>;

} // namespace

int RunLocalServer(Lifetime lifetime) {
    // The apartment is never left. Calls that reach it after the loop has ended (a client's
    // late release, say) wait for a dispatch that will not come, and Wine's CoUninitialize
    // waits for them in turn; ending the process instead disconnects their callers.
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        return 1;
    }
    SetLastReleaseAction(ServedClasses::Stop);
    // A server started by hand holds a reference of its own, so that no release ends it.
    std::optional<ServerReference> ownReference;
    if (lifetime == Lifetime::UntilEnded) {
        ownReference.emplace();
    }
    ServedClasses served;
    if (FAILED(served.Register())) {
        return 1;
    }

    UniqueThreadTimer idleTimer(
        lifetime == Lifetime::UntilLastRelease ? SetTimer(nullptr, 0, kIdleTimeoutMs, nullptr) : 0);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_TIMER && message.hwnd == nullptr &&
            message.wParam == idleTimer.get()) {
            idleTimer.reset();
            if (!ServerWasUsed()) {
                ServedClasses::Stop();
            }
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}

} // namespace camsim
