// camsim.exe as a process: its lifetime as a server and its command line.
#include <ostrel_server.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "unique_resources.h"

namespace {

using camsim::ComRef;
using camsim::UniqueHandle;

constexpr DWORD kExitWaitMs = 30000;

std::wstring CamsimPath() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return (std::filesystem::path(path).parent_path() / L"camsim.exe").wstring();
}

// Runs camsim.exe with `arguments` and returns its exit code, or STILL_ACTIVE if it does not
// end in time (it is then terminated).
DWORD RunCamsim(const std::wstring& arguments) {
    std::wstring commandLine = L"\"" + CamsimPath() + L"\" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        ADD_FAILURE() << "cannot start camsim.exe, error " << GetLastError();
        return STILL_ACTIVE;
    }
    const UniqueHandle processHandle(process.hProcess);
    const UniqueHandle threadHandle(process.hThread);
    if (WaitForSingleObject(processHandle.Get(), kExitWaitMs) != WAIT_OBJECT_0) {
        TerminateProcess(processHandle.Get(), 1);
        return STILL_ACTIVE;
    }
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(processHandle.Get(), &code);
    return code;
}

ComRef<IOstrelHost> CreateHost() {
    ComRef<IOstrelHost> host;
    CoCreateInstance(CLSID_OstrelHost, nullptr, CLSCTX_LOCAL_SERVER, IID_IOstrelHost,
                     host.PutVoid());
    return host;
}

ComRef<IOsCalibration> CreateCalibration() {
    ComRef<IOsCalibration> calibration;
    CoCreateInstance(CLSID_OsCalibration, nullptr, CLSCTX_LOCAL_SERVER, IID_IOsCalibration,
                     calibration.PutVoid());
    return calibration;
}

UniqueHandle OpenServerProcess(IOsCalibration* calibration) {
    ULONG pid = 0;
    EXPECT_HRESULT_SUCCEEDED(calibration->SimProcessId(&pid));
    return UniqueHandle(OpenProcess(SYNCHRONIZE, FALSE, pid));
}

// Each test in its own single-threaded apartment, as the library's callers use COM.
class SimulatorProcess : public ::testing::TestWithParam<bool> {
protected:
    SimulatorProcess() : apartment_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~SimulatorProcess() override {
        if (SUCCEEDED(apartment_)) {
            CoUninitialize();
        }
    }
    void SetUp() override { ASSERT_HRESULT_SUCCEEDED(apartment_); }

private:
    HRESULT apartment_;
};

// Parameter: whether the calibration object, rather than the main object, goes last.
TEST_P(SimulatorProcess, EndsWhenTheLastObjectIsReleased) {
    auto host = CreateHost();
    auto calibration = CreateCalibration();
    ASSERT_TRUE(host && calibration);
    const UniqueHandle server = OpenServerProcess(calibration.Get());
    ASSERT_TRUE(server);
    if (GetParam()) {
        host.Reset();
        EXPECT_EQ(WaitForSingleObject(server.Get(), 0), WAIT_TIMEOUT);
        calibration.Reset();
    } else {
        calibration.Reset();
        EXPECT_EQ(WaitForSingleObject(server.Get(), 0), WAIT_TIMEOUT);
        host.Reset();
    }
    EXPECT_EQ(WaitForSingleObject(server.Get(), kExitWaitMs), WAIT_OBJECT_0);
}

INSTANTIATE_TEST_SUITE_P(, SimulatorProcess, ::testing::Bool());

class SimulatorBadCommandLine : public ::testing::TestWithParam<const wchar_t*> {};

TEST_P(SimulatorBadCommandLine, FailsWithoutDoingAnything) {
    EXPECT_EQ(RunCamsim(GetParam()), 2u);
}

INSTANTIATE_TEST_SUITE_P(, SimulatorBadCommandLine,
                         ::testing::Values(L"", L"/Register", L"/RegServer /UnregServer",
                                           L"RegServer"));

} // namespace
