#include "server_session.h"

#include <objbase.h>

#include "module_state.h"

namespace c_interface {
namespace {

std::mutex gServerSessions;

} // namespace

ServerSession::ServerSession() : mLock(gServerSessions) {
    mLibraryApartmentBefore = gComInitialized;
    APTTYPE type;
    APTTYPEQUALIFIER qualifier;
    if (FAILED(CoGetApartmentType(&type, &qualifier))) {
        if (gComInitialized) {
            mRefusal = OSTREL_WRONG_THREAD;
        }
        return;
    }
    // An implicit multithreaded apartment is the process's, not this thread's: nothing to keep.
    if (qualifier == APTTYPEQUALIFIER_IMPLICIT_MTA) {
        return;
    }
    // The library's apartment is single-threaded: it can't enter one on this thread.
    if (type == APTTYPE_MTA && !gComInitialized) {
        mRefusal = OSTREL_WRONG_THREAD;
        return;
    }
    const DWORD model = type == APTTYPE_MTA ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED;
    const HRESULT again = CoInitializeEx(nullptr, model);
    if (again == S_FALSE) {
        mBalancing = true;
    } else if (SUCCEEDED(again)) {
        CoUninitialize();
    }
}

ServerSession::~ServerSession() {
    if (!mBalancing) {
        return;
    }
    // Our own entry, plus the library's if it entered here, less the library's leaving if it
    // left here (which our entry then stood in for).
    const bool entered = !mLibraryApartmentBefore && gComInitialized;
    const bool left = mLibraryApartmentBefore && !gComInitialized;
    for (int leave = 1 + int(entered) - int(left); leave > 0; --leave) {
        CoUninitialize();
    }
}

} // namespace c_interface
