#include "event_broadcast.h"

namespace camsim {

namespace {

constexpr wchar_t kListenerClass[] = L"wcOstrelEvents";

struct Broadcast {
    UINT message;
    WPARAM value;
    unsigned posted;
};

BOOL CALLBACK PostIfListener(HWND window, LPARAM context) {
    auto& broadcast = *reinterpret_cast<Broadcast*>(context);
    // Longer than the listener's class name, so a longer name never matches by truncation.
    wchar_t className[ARRAYSIZE(kListenerClass) + 1] = {};
    const int length = GetClassNameW(window, className, ARRAYSIZE(className));
    // Window class names compare without regard to case, as RegisterClassW treats them.
    if (length > 0 &&
        CompareStringOrdinal(className, length, kListenerClass, -1, TRUE) == CSTR_EQUAL) {
        if (PostMessageW(window, broadcast.message, broadcast.value, 0)) {
            ++broadcast.posted;
        }
    }
    return TRUE;
}

} // namespace

HRESULT PostEventToListeners(ULONGLONG value) {
    const UINT message = RegisterWindowMessageW(L"Tamso");
    if (message == 0) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    Broadcast broadcast{message, static_cast<WPARAM>(value), 0};
    EnumWindows(PostIfListener, reinterpret_cast<LPARAM>(&broadcast));
    return broadcast.posted > 0 ? S_OK : S_FALSE;
}

} // namespace camsim
