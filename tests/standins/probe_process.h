#pragma once

#include <windows.h>

#include <string>

struct ProbeResult {
    DWORD exitCode;
    std::string output;
    std::string errors;
};

// Runs standins_probe.exe, which sits beside the test program, with arguments, and collects
// what it writes.
ProbeResult RunProbe(const std::wstring& arguments);
