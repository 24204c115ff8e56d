// Runs the calling thread's messages while a test waits for something they bring about.
#pragma once

#include <windows.h>

// Until done() or about ten seconds have passed; returns done().
template <class Done> bool PumpMessagesUntil(Done done) {
    for (int i = 0; i < 1000 && !done(); ++i) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
        Sleep(10);
    }
    return done();
}
