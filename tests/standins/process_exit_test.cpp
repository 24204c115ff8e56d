// What vz.dll deletes as the process exits, seen from standins_probe.exe, which sits beside the
// test program.
#include <windows.h>

#include <gtest/gtest.h>

#include <unique_resource.h>

#include <filesystem>
#include <string>

namespace {

struct ProbeResult {
    DWORD exitCode = STILL_ACTIVE;
    std::string output;
};

// Runs the probe with arguments and collects its standard output.
ProbeResult RunProbe(const std::wstring& arguments) {
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    owners::UniqueHandle readEnd;
    owners::UniqueHandle writeEnd;
    ProbeResult result;
    if (!CreatePipe(readEnd.put(), writeEnd.put(), &inherit, 0)) {
        return result;
    }
    SetHandleInformation(readEnd.get(), HANDLE_FLAG_INHERIT, 0);
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring commandLine =
        L"\"" + (std::filesystem::path(program).parent_path() / L"standins_probe.exe").wstring() +
        L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writeEnd.get();
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION started{};
    const bool ran = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                    nullptr, &startup, &started);
    // Only the probe may hold the write end, or reading would never see the end.
    writeEnd.reset();
    char buffer[4096];
    DWORD read = 0;
    if (!ran) {
        return result;
    }
    const owners::UniqueHandle process(started.hProcess);
    const owners::UniqueHandle thread(started.hThread);
    while (ReadFile(readEnd.get(), buffer, sizeof buffer, &read, nullptr) && read != 0) {
        result.output.append(buffer, read);
    }
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &result.exitCode);
    return result;
}

struct ExitCase {
    const wchar_t* registrations; // in the order the probe makes them
    const char* expectedOutput;   // the order vz.dll deletes them in
};

class DeleteAtExit : public testing::TestWithParam<ExitCase> {};

TEST_P(DeleteAtExit, RunsLowerOrdersFirstAndLaterRegistrationsFirst) {
    const ProbeResult result = RunProbe(GetParam().registrations);

    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(result.output, GetParam().expectedOutput);
}

INSTANTIATE_TEST_SUITE_P(Orders, DeleteAtExit,
                         testing::Values(ExitCase{L"a:2 b:1 c:2 d:1", "d b c a "},
                                         ExitCase{L"late:4294967295 first:0", "first late "},
                                         ExitCase{L"late:5 singleton early:1",
                                                  "early singleton late "}));

} // namespace
