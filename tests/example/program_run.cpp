#include "program_run.h"

#include <sstream>

#include "test_files.h"
#include "unique_resources.h"

namespace testfiles {
namespace {

constexpr DWORD kRunLimitMs = 60000;

std::filesystem::path BinFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

// Processes that Wine starts in the background inherit the program's output and may hold it
// past the program's end: the file can be read and deleted all the same.
camsim::UniqueHandle CreateOutputFile(const std::filesystem::path& file) {
    SECURITY_ATTRIBUTES inheritable{sizeof(inheritable), nullptr, TRUE};
    HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    return camsim::UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

std::wstring Quoted(const std::wstring& argument) {
    return L"\"" + argument + L"\"";
}

} // namespace

ProgramResult RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                         const std::filesystem::path& work) {
    ProgramResult result;
    // Beside the work folder, so that it holds only what the program wrote.
    const std::wstring capture = L"capture-" + std::to_wstring(GetCurrentProcessId());
    const std::filesystem::path outFile = work.parent_path() / (capture + L"-out.txt");
    const std::filesystem::path errFile = work.parent_path() / (capture + L"-err.txt");
    {
        std::wstring commandLine = Quoted((BinFolder() / program).wstring());
        for (const std::wstring& argument : arguments) {
            commandLine += L" " + Quoted(argument);
        }
        const camsim::UniqueHandle out = CreateOutputFile(outFile);
        const camsim::UniqueHandle err = CreateOutputFile(errFile);
        if (!out || !err) {
            return result;
        }
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = nullptr;
        startup.hStdOutput = out.Get();
        startup.hStdError = err.Get();
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                            nullptr, work.c_str(), &startup, &process)) {
            return result;
        }
        const camsim::UniqueHandle processHandle(process.hProcess);
        const camsim::UniqueHandle threadHandle(process.hThread);
        if (WaitForSingleObject(processHandle.Get(), kRunLimitMs) != WAIT_OBJECT_0) {
            TerminateProcess(processHandle.Get(), STILL_ACTIVE);
            WaitForSingleObject(processHandle.Get(), kRunLimitMs);
        }
        GetExitCodeProcess(processHandle.Get(), &result.exitCode);
    }
    result.out = ReadBytes(outFile);
    result.err = ReadBytes(errFile);
    std::error_code ignored;
    std::filesystem::remove(outFile, ignored);
    std::filesystem::remove(errFile, ignored);
    return result;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(line);
    }
    return lines;
}

} // namespace testfiles
