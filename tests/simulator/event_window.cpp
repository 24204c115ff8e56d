#include "event_window.h"

ListenerWindow::ListenerWindow(const wchar_t* className) : className_(className) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = className;
    registeredClass_ = RegisterClassW(&windowClass) != 0;
    handle_ = CreateWindowExW(0, className, L"camsim test listener", 0, 0, 0, 0, 0, nullptr,
                              nullptr, GetModuleHandleW(nullptr), nullptr);
    if (handle_ != nullptr) {
        SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
}

ListenerWindow::~ListenerWindow() {
    if (handle_ != nullptr) {
        DestroyWindow(handle_);
    }
    if (registeredClass_) {
        UnregisterClassW(className_, GetModuleHandleW(nullptr));
    }
}

LRESULT CALLBACK ListenerWindow::Procedure(HWND window, UINT message, WPARAM wParam,
                                           LPARAM lParam) {
    auto* self = reinterpret_cast<ListenerWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr && message >= 0xC000 && message <= 0xFFFF) {
        self->received_.push_back({message, wParam, lParam});
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool PumpMessagesUntil(const std::function<bool()>& done, DWORD timeoutMs) {
    const ULONGLONG deadline = GetTickCount64() + timeoutMs;
    for (;;) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
        const ULONGLONG now = GetTickCount64();
        if (done() || now >= deadline) {
            return done();
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(deadline - now),
                                  QS_ALLINPUT);
    }
}
