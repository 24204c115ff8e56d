// The library-wide re-entrant lock that serialises every call into the server.
#pragma once

#include <windows.h>

// The lock, created on first use and kept for the rest of the process.
CRITICAL_SECTION& OstrelSection();
