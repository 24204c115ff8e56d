// The process-wide connection to the server's main object, shared by every COstrel.
#pragma once

#include <objidl.h>

#include <ostrel_server.h>

// The global interface table that hands other threads a proxy of the connection, its cookie
// there, and the thread that made the connection (the only one that calls it directly).
extern IGlobalInterfaceTable* gInterfaceTable;
extern DWORD gHostCookie;
extern DWORD gHostThreadId;

// The connection with one new reference for the caller, connecting first if there is none.
// Null when the server can't be reached, is older than 5.90.4, or is refused for the Pleora
// library on the search path.
IOstrelHost* ConnectOstrel();

// Drops one reference a handle held; the last one tears the connection down.
void ReleaseOstrelHost(IOstrelHost* host);

// A proxy of the connection for the calling thread, or null.
IOstrelHost* HostProxyForThisThread();
