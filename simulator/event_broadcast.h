// The server's notification: a registered window message posted to its clients' event windows.
#pragma once

#include <windows.h>

namespace camsim {

// Posts RegisterWindowMessageW(L"Tamso") with wParam = value and lParam 0 to every top-level
// window of class "wcOstrelEvents". S_OK when at least one window got it, S_FALSE when none
// exists.
HRESULT PostEventToListeners(ULONGLONG value);

} // namespace camsim
