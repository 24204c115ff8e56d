// Top-level windows that record the registered messages (ids 0xC000 and up) they receive.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

struct ReceivedMessage {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

class ListenerWindow {
public:
    // The first window of a class registers it and unregisters it again when destroyed, so
    // windows of one class must go in reverse order of creation (as locals do).
    explicit ListenerWindow(const wchar_t* className);
    ~ListenerWindow();
    ListenerWindow(const ListenerWindow&) = delete;
    ListenerWindow& operator=(const ListenerWindow&) = delete;

    bool Created() const { return handle_ != nullptr; }
    const std::vector<ReceivedMessage>& Received() const { return received_; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    const wchar_t* className_;
    bool registeredClass_ = false;
    HWND handle_ = nullptr;
    std::vector<ReceivedMessage> received_;
};

// Dispatches this thread's messages until `done` holds or `timeoutMs` passes; false on timeout.
bool PumpMessagesUntil(const std::function<bool()>& done, DWORD timeoutMs);
