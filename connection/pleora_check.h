// Which server versions may run beside which Pleora camera library.
#pragma once

#include <windows.h>

// CyCamLib.dll's fixed file-version record as found on the process's search path; all zero
// when the library is not there or has no version record.
VS_FIXEDFILEINFO ReadCyCamLibVersion();

// Whether the server may be used with the CyCamLib.dll whose dwFileVersionMS is cyCamLib
// (0 when absent or without a version).
bool PleoraCompatible(DWORD major, DWORD minor, DWORD cyCamLib);
