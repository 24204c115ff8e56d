// Process-wide state shared by the connection, the calibration handles and the COM apartment.
#pragma once

#include <atomic>
#include <cstdint>

#include <ostrel_server.h>

// The library has called CoInitializeEx successfully and not yet CoUninitialize. One flag for the
// whole process, not one per thread.
extern bool gComInitialized;

// The server connection; null while not connected.
extern IOstrelHost* gOstrelHost;
// Live references to the connection held by COstrel handles.
extern std::atomic<std::uint32_t> gHostRefs;
// Live calibration references handed out by CreateOstrelCal; never below 0. Handles are created
// and dropped on one thread at a time, so this is a plain count.
extern std::int32_t gCalRefs;

// The server's version, written at each new connection.
extern std::uint32_t gServerMajor;
extern std::uint32_t gServerMinor;
extern std::uint32_t gServerBuild;

// Why the calling thread's latest attempt at a first connection failed, for the C interface's
// status codes.
enum class ConnectionFailure : std::uint8_t { kNone, kWrongApartment, kNoServer, kRefused };
extern thread_local ConnectionFailure gLastConnectionFailure;
