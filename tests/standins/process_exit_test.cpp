// What vz.dll deletes as the process exits, seen from standins_probe.exe, which sits beside the
// test program.
#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

struct CloseHandleDeleter {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandleDeleter>;

struct ProbeResult {
    DWORD exitCode;
    std::string output;
};

// Runs the probe with arguments and collects its standard output; its standard error is the
// test program's.
ProbeResult RunProbe(const std::wstring& arguments) {
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (!CreatePipe(&readEnd, &writeEnd, &inherit, 0)) {
        throw std::runtime_error("cannot create a pipe for the probe");
    }
    const Handle output(readEnd);
    Handle probeOutput(writeEnd);
    SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);

    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::filesystem::path probe =
        std::filesystem::path(program).parent_path() / L"standins_probe.exe";
    std::wstring commandLine = L"\"" + probe.wstring() + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = writeEnd;
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &startup, &started)) {
        throw std::runtime_error("cannot start standins_probe.exe");
    }
    const Handle process(started.hProcess);
    const Handle thread(started.hThread);
    // Only the probe may hold the write end, or reading would never see the end.
    probeOutput.reset();

    ProbeResult result{};
    char buffer[4096];
    DWORD read = 0;
    while (ReadFile(output.get(), buffer, sizeof buffer, &read, nullptr) && read != 0) {
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

INSTANTIATE_TEST_SUITE_P(
    Orders, DeleteAtExit,
    testing::Values(ExitCase{L"", ""}, ExitCase{L"a:1 b:2 c:3", "a b c "},
                    ExitCase{L"c:3 b:2 a:1", "a b c "}, ExitCase{L"a:7 b:7 c:7", "c b a "},
                    ExitCase{L"a:2 b:1 c:2 d:1", "d b c a "},
                    ExitCase{L"late:4294967295 first:0", "first late "},
                    ExitCase{L"late:5 singleton early:1", "early singleton late "}));

} // namespace
