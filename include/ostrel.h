// ostrel.dll: the host application's link to the camera server.
//
// Handles to the server's calibration object, the library-wide lock that serialises calls into
// the server, and the server version query. Link with ostrel::ostrel (find_package(ostrel)).
#pragma once

#include <windows.h>

#include <ostrel_server.h>

#if defined(OSTREL_BUILDING)
#define OSTREL_API __declspec(dllexport)
#else
#define OSTREL_API __declspec(dllimport)
#endif

// ---- Library-wide lock -------------------------------------------------------------------------
// One re-entrant lock serialises every call into the server. Take it around a sequence of server
// calls that must not interleave with other threads' calls; only while a COstrel handle is alive.

// Enters the library-wide lock; pair every call with ostrelLeave on the same thread.
OSTREL_API void ostrelEnter();
// Leaves the library-wide lock.
OSTREL_API void ostrelLeave();

// Holds the library-wide lock for its scope. Nested scopes on one thread do not block.
class OSTREL_API COstrelLock {
public:
    COstrelLock();
    ~COstrelLock();
    COstrelLock(const COstrelLock&) = delete;
    // Does nothing: the lock is neither taken nor released by assignment.
    COstrelLock& operator=(const COstrelLock&);
};

// The server's version as reported when the connection was made. False, with the outputs left
// untouched, while no connection exists; never connects by itself.
OSTREL_API bool GetOstrelVersion(unsigned long& major, unsigned long& minor, unsigned long& build);

// ---- Calibration object handle -----------------------------------------------------------------

// Copyable, reference-counted handle to one server calibration object (IOsCalibration). An empty
// handle creates its object on first use through operator-> or Get(). Use a handle on the thread
// that created its object; create and drop handles on one thread at a time.
class OSTREL_API COstrelCal {
public:
    // An empty handle.
    COstrelCal();
    // Shares other's object (one more reference); an empty other gives an empty handle.
    COstrelCal(const COstrelCal& other);
    ~COstrelCal();
    // Shares other's object and drops the one held before.
    COstrelCal& operator=(const COstrelCal& other);

    // The calibration object, created first if the handle is empty. Null when it can't be
    // created: test the result (or call Get()) before calling through it.
    IOsCalibration* operator->();
    // Creates the object if the handle is empty; true when the handle holds one.
    bool Get();
    // Drops the object; the handle becomes empty.
    void Release();
    // 0 releases the handle like Release(); any other value does nothing.
    COstrelCal& operator=(int v);
    // With 0: true when empty. With any other value: false.
    bool operator==(int v) const;
    // With 0: true when the handle holds an object. With any other value: false as well.
    bool operator!=(int v) const;
    // True when the handle holds an object.
    operator bool() const;

private:
    friend OSTREL_API COstrelCal GetOstrelCal();
    explicit COstrelCal(IOsCalibration* adopted);

    IOsCalibration* mCal;
};

// A handle to a new calibration object of the server; empty when the server can't be reached.
OSTREL_API COstrelCal GetOstrelCal();
