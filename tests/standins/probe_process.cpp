#include "probe_process.h"

#include <stdexcept>

namespace {

class Handle {
public:
    Handle() = default;
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle() { reset(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE get() const { return m_handle; }
    HANDLE* put() {
        reset();
        return &m_handle;
    }
    void reset() {
        if (m_handle != nullptr) {
            CloseHandle(m_handle);
            m_handle = nullptr;
        }
    }

private:
    HANDLE m_handle = nullptr;
};

struct Pipe {
    Handle read;
    Handle write; // inherited by the probe
};

void CreateInheritedPipe(Pipe& pipe) {
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    if (!CreatePipe(pipe.read.put(), pipe.write.put(), &inherit, 0) ||
        !SetHandleInformation(pipe.read.get(), HANDLE_FLAG_INHERIT, 0)) {
        throw std::runtime_error("cannot create a pipe for the probe");
    }
}

std::string ReadToEnd(HANDLE pipe) {
    std::string text;
    char buffer[4096];
    DWORD read = 0;
    while (ReadFile(pipe, buffer, sizeof buffer, &read, nullptr) && read != 0) {
        text.append(buffer, read);
    }
    return text;
}

std::wstring ProbePath() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length == MAX_PATH) {
        throw std::runtime_error("cannot find the test program's own path");
    }
    std::wstring probe(path, length);
    return probe.substr(0, probe.find_last_of(L"\\/") + 1) + L"standins_probe.exe";
}

} // namespace

ProbeResult RunProbe(const std::wstring& arguments) {
    Pipe output;
    Pipe errors;
    CreateInheritedPipe(output);
    CreateInheritedPipe(errors);

    std::wstring commandLine = L"\"" + ProbePath() + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = output.write.get();
    startup.hStdError = errors.write.get();
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &startup, &started)) {
        throw std::runtime_error("cannot start standins_probe.exe");
    }
    const Handle process(started.hProcess);
    const Handle thread(started.hThread);
    // Only the probe may hold the write ends, or reading would never see the end.
    output.write.reset();
    errors.write.reset();

    // The probe writes a few lines at most, far less than a pipe holds, so reading one pipe
    // to its end before the other cannot block the probe.
    ProbeResult result{};
    result.output = ReadToEnd(output.read.get());
    result.errors = ReadToEnd(errors.read.get());
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &result.exitCode);
    return result;
}
