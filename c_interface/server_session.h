// Every C call that may create, call or drop server objects runs inside a ServerSession. The
// library counts calibration references without a lock and enters and leaves its COM apartment
// on whichever thread makes or drops the first or last one; a session makes that safe for engines
// on several threads:
// - sessions run one at a time in the process (conversions from current tables take none);
// - a thread without COM is refused once the library's apartment was entered on another thread,
//   where the library would neither enter one for it nor could reach the server from it;
// - the calling thread's own COM initialisations count the same after the call as before, even
//   when the library entered or left its apartment on it.
#pragma once

#include <ostrel_c.h>

#include <mutex>

namespace c_interface {

class ServerSession {
public:
    ServerSession();
    ~ServerSession();
    ServerSession(const ServerSession&) = delete;
    ServerSession& operator=(const ServerSession&) = delete;

    // OSTREL_OK, or OSTREL_WRONG_THREAD for a thread that can't reach the server.
    ostrel_status Refusal() const { return mRefusal; }

private:
    std::unique_lock<std::mutex> mLock;
    ostrel_status mRefusal = OSTREL_OK;
    // The thread's apartment was entered once more for the session, to be balanced after it.
    bool mBalancing = false;
    bool mLibraryApartmentBefore = false;
};

} // namespace c_interface
