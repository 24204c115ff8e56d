#include "program_run.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "test_files.h"
#include <unique_resource.h>

namespace testfiles {
namespace {

constexpr DWORD kRunLimitMs = 60000;
constexpr DWORD kPollMs = 100;

// Processes that Wine starts in the background inherit the program's output and may hold it
// past the program's end: the file can be read and deleted all the same.
owners::UniqueFile CreateOutputFile(const std::filesystem::path& file) {
    SECURITY_ATTRIBUTES inheritable{sizeof(inheritable), nullptr, TRUE};
    return owners::UniqueFile(CreateFileW(
        file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

} // namespace

ProgramResult RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                         const std::filesystem::path& work,
                         const std::function<void()>& whileRunning) {
    ProgramResult result;
    // Beside the work folder, so that it holds only what the program wrote.
    const std::wstring capture = L"capture-" + std::to_wstring(GetCurrentProcessId());
    const std::filesystem::path outFile = work.parent_path() / (capture + L"-out.txt");
    const std::filesystem::path errFile = work.parent_path() / (capture + L"-err.txt");
    {
        wchar_t self[MAX_PATH] = {};
        GetModuleFileNameW(nullptr, self, MAX_PATH);
        std::wstring commandLine =
            L"\"" + (std::filesystem::path(self).parent_path() / program).wstring() + L"\"";
        for (const std::wstring& argument : arguments) {
            commandLine += L" \"" + argument + L"\"";
        }
        const owners::UniqueFile out = CreateOutputFile(outFile);
        const owners::UniqueFile err = CreateOutputFile(errFile);
        if (!out || !err) {
            return result;
        }
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = out.get();
        startup.hStdError = err.get();
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                            nullptr, work.c_str(), &startup, &process)) {
            return result;
        }
        const owners::UniqueHandle processHandle(process.hProcess);
        const owners::UniqueHandle threadHandle(process.hThread);
        const DWORD step = whileRunning ? kPollMs : kRunLimitMs;
        DWORD waited = 0;
        for (;
             waited < kRunLimitMs && WaitForSingleObject(processHandle.get(), step) == WAIT_TIMEOUT;
             waited += step) {
            if (whileRunning) {
                whileRunning();
            }
        }
        if (waited >= kRunLimitMs) {
            TerminateProcess(processHandle.get(), STILL_ACTIVE);
            WaitForSingleObject(processHandle.get(), kRunLimitMs);
        }
        GetExitCodeProcess(processHandle.get(), &result.exitCode);
    }
    result.out = ReadBytes(outFile);
    result.err = ReadBytes(errFile);
    std::error_code ignored;
    std::filesystem::remove(outFile, ignored);
    std::filesystem::remove(errFile, ignored);
    return result;
}

void ExpectOneLineFailure(const ProgramResult& result, const std::string& named) {
    EXPECT_NE(result.exitCode, 0u);
    EXPECT_NE(result.exitCode, static_cast<DWORD>(STILL_ACTIVE)) << "did not start or end";
    ASSERT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_TRUE(result.err.ends_with('\n')) << result.err;
    EXPECT_EQ(result.err.rfind("ostrel-convert: ", 0), 0u) << result.err;
    EXPECT_NE(result.err.find(named), std::string::npos) << result.err;
}

} // namespace testfiles
