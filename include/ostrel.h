// ostrel.dll: the host application's link to the camera server.
//
// Handles to the server's calibration objects, the library-wide lock that serialises calls through
// the connection, the server version query, and the calibration engine that turns raw detector
// counts into temperatures. Link with ostrel::ostrel (find_package(ostrel)).
#pragma once

// The exported classes follow MinGW's C++ ABI, which MSVC does not share.
#if defined(_MSC_VER)
#error                                                                                             \
    "ostrel.h's C++ classes are for hosts built with MinGW: with MSVC, include ostrel_c.h and link ostrel.lib"
#endif

#include <windows.h>

#include <ostrel_server.h>
#include <ostrel_types.h>
#include <vz/event.h>
#include <vz/invoker.h>
#include <vz/reduce/factory_calibration.h>
#include <vz/reduce/object_parameters.h>
#include <vz/singleton.h>

#if defined(OSTREL_BUILDING)
#define OSTREL_API __declspec(dllexport)
#else
#define OSTREL_API __declspec(dllimport)
#endif

// ---- Threads -----------------------------------------------------------------------------------
// Calibration objects, an engine's included, belong to the COM apartment of the thread that creates
// them: make an engine's calls that reach the server (loads, object parameters, queries, and table
// rebuilds, which the first conversion after a change makes) and its destruction on the thread that
// loads it, and its other calls one at a time. Once the tables a conversion brings up to date are
// current, any number of threads, COM or none, may convert through the engine at once, taking no
// lock, while no thread changes it. Engines on different threads may run side by side: the C
// interface runs its calls that reach the server one at a time; C++ engines take no lock, and
// calibration objects are counted without one, so a C++ host makes and drops them (an engine's
// first server call, SetBroadCal, destroying an engine, GetOstrelCal, copying or dropping a
// COstrelCal) one thread at a time. Calls on the connection (COstrel, ostrel_check_connection,
// ostrel_server_version) may come from any thread and run one at a time. Each thread that reaches
// the server initialises COM first, except the first, for which the library does it (so it must not
// be in the multithreaded apartment). Notifications arrive on the message thread
// (ostrel_attach_message_thread, vz::messageQueueInvoker), which pumps messages: callbacks run
// there (or through the invoker they were attached with), and subscriptions are made and ended
// there only.

// ---- Library-wide lock -------------------------------------------------------------------------
// One re-entrant lock serialises the calls through COstrel handles; calls on calibration objects,
// an engine's included, do not take it. Take it around a sequence of COstrel calls that must not
// interleave with other threads' calls; only while a COstrel handle is alive.

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

// ---- Server connection handle -----------------------------------------------------------------

// Copyable handle to the camera server's main object (IOstrelHost). All handles share one
// process-wide connection, made on first demand and torn down when the last handle lets go. The
// connection is refused for servers older than 5.90.4 and when an incompatible Pleora camera
// library (CyCamLib.dll) is on the search path. A handle copied to, or called from, a thread other
// than the connecting one goes through a proxy for that thread; a thread without COM gets none, so
// the copy is empty and the call goes through null. Threads: see the top of this header.
class OSTREL_API COstrel {
public:
    // The proxy that carries one server call: it holds the library-wide lock and a reference to
    // the server for as long as it lives, that is until the end of the calling expression.
    class OSTREL_API CMarshalProxy {
    public:
        // Takes the lock; calls through p (or, for null, through a proxy for this thread).
        explicit CMarshalProxy(IOstrelHost* p);
        CMarshalProxy();
        CMarshalProxy(const CMarshalProxy& other);
        // Releases the reference and leaves the lock.
        ~CMarshalProxy();
        // Copies the pointer only: no reference or lock is taken or given up.
        CMarshalProxy& operator=(const CMarshalProxy& other);
        // The server object to call; null when no connection could be made.
        IOstrelHost* operator->();

    private:
        IOstrelHost* mHost;
    };

    // An empty handle; it connects on first use through operator-> or Get().
    COstrel();
    // Shares other's connection; a copy made on another thread rebinds to the copying thread.
    COstrel(const COstrel& other);
    ~COstrel();
    COstrel& operator=(const COstrel& other);

    // Calls the server under the library-wide lock, connecting first if the handle is empty:
    // handle->Method(...). Test the handle first: on a failed connection the call would go
    // through null.
    CMarshalProxy operator->();
    // Connects if the handle is empty; true when it holds the connection.
    bool Get();
    // Lets the connection go; the handle becomes empty.
    void Release();
    // 0 releases the handle like Release(); any other value does nothing.
    COstrel& operator=(int v);
    // With 0: true when empty. With any other value: false.
    bool operator==(int v) const;
    // With 0: true when the handle holds the connection. With any other value: false as well.
    bool operator!=(int v) const;
    // True when the handle holds the connection.
    operator bool() const;

private:
    friend OSTREL_API COstrel GetOstrel();
    // Takes other's connection and binds it to the calling thread.
    void TakeFrom(const COstrel& other);

    IOstrelHost* mHost;
    unsigned long mThreadId;
};

// A handle to the connection, connecting first if needed; empty when the server can't be
// reached, is too old, or is refused for the Pleora library on the search path, or the thread is
// in the multithreaded apartment. GetOstrelFailure() says which.
OSTREL_API COstrel GetOstrel();

// Why the calling thread's latest failure happened, in one line: a connection or calibration
// object refused (GetOstrel, COstrel::Get, GetOstrelCal), a server call an engine made that failed
// ("CalComputeLUT (slot 9) failed: HRESULT 0x80004005 (...)"), a record file that could not be
// read. GetOstrel, GetOstrelCal and the record readers empty it first; a call that fails for its
// arguments alone leaves it as it was. The text stays valid until the thread's next library call.
OSTREL_API const char* GetOstrelFailure();

// ---- Calibration object handle -----------------------------------------------------------------

// Copyable, reference-counted handle to one server calibration object (IOsCalibration). An empty
// handle creates its object on first use through operator-> or Get(). Threads: see the top of this
// header.
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

// ---- Server notifications ---------------------------------------------------------------------

// Receives the server's notifications: a hidden top-level window, created on the thread of
// vz::messageQueueInvoker (which must pump messages), raises mEvent with the 64-bit value of
// every registered "Tamso" message it gets. Reach the one instance through gOstrelEvents. Threads:
// see the top of this header.
class OSTREL_API COstrelEvents {
public:
    // Registers the window class and message, and posts the window's creation to
    // vz::messageQueueInvoker; returns without waiting for it.
    COstrelEvents();
    // Destroys the window (which succeeds only on the window's own thread); attached handlers
    // are not destroyed.
    ~COstrelEvents();
    // Shallow copies: the same window and the same handler records.
    COstrelEvents(const COstrelEvents& other);
    COstrelEvents& operator=(const COstrelEvents& other);

    // The event window; null until the message-queue thread has created it.
    HWND mHwnd;
    // Attach handlers here. Each runs with (nullptr, value): directly on the window's thread
    // when attached without an invoker, else posted to its invoker (asynchronous) or run
    // through it while the window waits.
    vz::event1<unsigned __int64> mEvent;

private:
    static LRESULT CALLBACK WndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    static UINT mMsgOstrel;
};

using COstrelEventsHolder =
    vz::TSingletonPtr<COstrelEvents, 100000, 0, vz::TSingletonPtrPostCreateDoNothing>;
// The holder's code and statics live in ostrel.dll, so host and library share one instance.
extern template class OSTREL_API
    vz::TSingletonPtr<COstrelEvents, 100000, 0, vz::TSingletonPtrPostCreateDoNothing>;

// The process's event window, created on first use (gOstrelEvents->mEvent) and destroyed at
// process exit.
OSTREL_API extern COstrelEventsHolder gOstrelEvents;

// ---- Calibration engine ------------------------------------------------------------------------

namespace vz {

struct BroadCalState;

// Turns raw detector counts into temperatures through one look-up table (LUT) per preset (0..3),
// which the camera server computes from the preset's factory calibration and the object
// parameters. Costly work (server objects, shared buffers, tables) happens on first need.
//
// Threads: see the top of this header. Preset numbers are trusted (only GetBroadCal checks them);
// a preset above 3 is a caller error.
class OSTREL_API CBroadCal {
public:
    // A new engine: LUT unit Celsius, all four LUTs dirty, no preset active.
    CBroadCal();
    // Releases the server objects and shared buffers.
    ~CBroadCal();
    CBroadCal(const CBroadCal&) = delete;
    // Shares other's state: afterwards both engines use one state, this engine's former state is
    // abandoned, and only one of the two may be destroyed.
    CBroadCal& operator=(const CBroadCal& other);

    // Loads a factory calibration into a new server object for the preset, dropping the preset's
    // previous object, and keeps a copy; the preset's LUT is rebuilt on next use. The new object
    // holds no object parameters: call SetObjectParams after every SetBroadCal (unchanged values
    // are then sent again), or the preset converts with the server's defaults, as for a black
    // body (with the sample records, count 20000 reads 56.437 C instead of 57.386 C).
    // On failure the preset's object has been replaced all the same. When the failure comes before
    // the integration time is set, the preset keeps converting through its old LUT until that is
    // next rebuilt, and SetObjectParams with unchanged values sends nothing: load it again.
    bool SetBroadCal(unsigned char preset, reduce::CQuilloFactoryCalReduceObject* record);
    // Copies the preset's stored record out; false for a preset above 3.
    bool GetBroadCal(unsigned char preset, reduce::CQuilloFactoryCalReduceObject* record);
    // Sends objFactorA (emissivity), objTempA (reflected temperature), objFactorB (atmospheric
    // transmission) and objTempB (atmospheric temperature) to the server objects the four presets
    // hold now, marking all four LUTs dirty, unless these four equal the values last sent and no
    // SetBroadCal came since; keeps a copy of the whole record, whose other fields the engine does
    // not use. Call it after SetBroadCal: called before, it returns true, but each SetBroadCal
    // gives its preset a new object without the parameters. False when a server call fails; the
    // next call sends again.
    bool SetObjectParams(reduce::CObjectParametersReduceObject* params);
    // Copies the stored object parameters out; always true.
    bool GetObjectParams(reduce::CObjectParametersReduceObject* params);

    // Rebuilds the preset's LUT if it is dirty; true when it is current.
    bool UpdateLUT(unsigned char preset);
    // The preset's 65536 temperatures in the LUT unit, brought up to date; null on failure.
    // Valid for the engine's life; the contents change at the next rebuild.
    float* GetLUTOutput(unsigned char preset);
    // The preset's 65536 status bytes (ELUTStatus), brought up to date; null on failure. The
    // calibrated range is the factory record's tempMinK..tempMaxK narrowed to the server's values
    // for the counts from countsLow up to, but not including, countsHigh, with a margin at each end
    // of 5 degrees or 5 % of the end's Celsius value, whichever is larger. Walking outward from the
    // count halfway between countsLow and countsHigh, entries are 0 until the first count beyond
    // countsLow or countsHigh or with a value outside the range; from there they are 1 until the
    // first value beyond the margin too, and from that on 2 below or 4 above, holding the margin's
    // limit. Above, when no value goes beyond the margin, every entry from the first outside the
    // range on is 4 all the same (with the sample records, counts 61917 to 65535 read 157.5 C where
    // the server gives 150.0 to 156.4 C); below, such entries stay 1.
    unsigned char* GetLUTStatus(unsigned char preset);

    // The unit the LUTs hold their temperatures in.
    ETempType lutTempType();
    // Changes the LUT unit; all four LUTs are rebuilt on next use if it changed.
    void setLUTTempType(ETempType type);
    // Copies flags[0..3]: the presets whose LUTs the per-pixel and keyed conversions refresh.
    bool SetActivePresets(bool* const flags);
    // Whether the calibration service answers. Asked once: a failure is final for this engine.
    bool isAvailable();

    // Conversions from counts bring the LUTs they read up to date first and return false, with
    // nothing written, when that fails. Temperatures come in unit type; status, when not null,
    // receives each value's ELUTStatus byte. Out-of-range counts are clamped to 0..65535.
    // Buffers, lengths, presets, preset maps and keys are trusted, never checked.

    // One count through the preset's LUT.
    bool CountsToTemp(unsigned char preset, unsigned short counts, float* temp,
                      unsigned char* status, ETempType type);
    // n counts through the preset's LUT.
    bool CountsToTemp(unsigned char preset, unsigned short* counts, float* temp, unsigned long n,
                      unsigned char* status, ETempType type);
    // n counts given as floats (fractions truncated) through the preset's LUT.
    bool CountsToTemp(unsigned char preset, float* counts, float* temp, unsigned long n,
                      unsigned char* status, ETempType type);
    // n elements of any EDataType in, any EDataType out, all through the preset's LUT. False
    // for an element type code above 9. in and out may be the same buffer when their elements
    // have the same width.
    bool CountsToTemp(unsigned char preset, STypedData in, STypedData out, unsigned long n,
                      unsigned char* status, ETempType type);
    // Element k through the LUT of preset presetMap[k]. The active presets' LUTs are brought up
    // to date first (SetActivePresets); a preset the map names must be active or current.
    bool CountsToTemp(STypedData in, const unsigned char* presetMap, STypedData out,
                      unsigned long n, unsigned char* status, ETempType type);
    // Element k through the LUT of preset keyToPreset[pixelKeys[k]]; keyToPreset must cover
    // every key used. Active presets are refreshed as above.
    bool CountsToTemp(STypedData in, const unsigned long* pixelKeys,
                      const unsigned char* keyToPreset, STypedData out, unsigned long n,
                      unsigned char* status, ETempType type);

    // The count the server's calibration object gives for temp (in unit type); the LUT is not
    // used. On failure *counts holds whatever the server left there.
    bool TempToCounts(unsigned char preset, float temp, unsigned short* counts, ETempType type);
    // The integration times (truncated) at which the preset's calibrated range reaches its
    // highest and lowest counts. Both outputs are written only when both answers came.
    bool GetIntegrationTimeRange(unsigned char preset, unsigned long& minTime,
                                 unsigned long& maxTime);
    // The temperature range the preset covers at integration time intTime. Leaves the preset's
    // server object loaded and its LUT built for intTime until the preset is next made dirty.
    // The scanned LUT values are in the LUT unit, the limits in Celsius: with a LUT unit other
    // than Celsius the result mixes the two. Values within 0.001 of zero are reported as 0.
    bool GetTempRangeFromIntTime(unsigned char preset, unsigned long intTime, float& minTemp,
                                 float& maxTemp);

private:
    friend struct BroadCalAccess;
    BroadCalState* mState;
};

// ---- Record files ------------------------------------------------------------------------------
// A record file holds one "name = value" line per field of the record, named as the record's
// fields are ("calCoef0" .. "calCoef5" for calCoef); "#" starts a comment. Temperatures are in
// kelvin, as the records hold them. The SDK's share/ostrel/samples holds one of each.

// Fills record from the file; fields the file does not name keep their value, so start from a
// zeroed record. False, with the file's name and the line in GetOstrelFailure(), when the file
// can't be read, a name is unknown, a value is not a number of the field's kind, or a field is
// given twice; the record may then hold some of the file's fields.
OSTREL_API bool ReadFactoryCalFile(const wchar_t* file,
                                   reduce::CQuilloFactoryCalReduceObject* record);
OSTREL_API bool ReadObjectParamsFile(const wchar_t* file,
                                     reduce::CObjectParametersReduceObject* params);

} // namespace vz
