// camsim.exe as a process: its lifetime as a server, its command line, its registration.
#include <filesystem>
#include <string>

#include "server_session.h"

namespace {

using camsim::UniqueHandle;
using camsim::UniqueKey;

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

UniqueHandle OpenServerProcess(IOsCalibration* calibration) {
    return UniqueHandle(OpenProcess(SYNCHRONIZE, FALSE, ServerProcessId(calibration)));
}

class SimulatorProcess : public ServerTest, public ::testing::WithParamInterface<bool> {};

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

TEST(SimulatorCommandLine, ServerEndsWhenNoClientCreatesAnObject) {
    EXPECT_EQ(RunCamsim(L"-Embedding"), 0u);
}

class SimulatorBadCommandLine : public ::testing::TestWithParam<const wchar_t*> {};

TEST_P(SimulatorBadCommandLine, FailsWithoutDoingAnything) {
    EXPECT_EQ(RunCamsim(GetParam()), 2u);
}

INSTANTIATE_TEST_SUITE_P(, SimulatorBadCommandLine,
                         ::testing::Values(L"", L"/Register", L"/RegServer /UnregServer",
                                           L"RegServer"));

std::wstring ClassKey(const CLSID& clsid) {
    wchar_t text[39] = {};
    StringFromGUID2(clsid, text, 39);
    return std::wstring(L"Software\\Classes\\CLSID\\") + text + L"\\LocalServer32";
}

std::wstring ReadDefaultValue(HKEY root, const std::wstring& key) {
    wchar_t text[MAX_PATH] = {};
    DWORD bytes = sizeof(text);
    if (RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &bytes) !=
        ERROR_SUCCESS) {
        return {};
    }
    return text;
}

// Leaves the simulator registered whatever the test did, for the tests that follow.
struct RegisterAgainAtExit {
    ~RegisterAgainAtExit() { RunCamsim(L"/RegServer"); }
};

class SimulatorRegistration : public ServerTest {};

TEST_F(SimulatorRegistration, UnregisterRemovesWhatRegisterWrites) {
    const RegisterAgainAtExit reregister;
    ASSERT_EQ(RunCamsim(L"/UnregServer"), 0u);
    EXPECT_EQ(ReadDefaultValue(HKEY_CURRENT_USER, ClassKey(CLSID_OsCalibration)), L"");
    ComRef<IOsCalibration> calibration;
    EXPECT_EQ(CoCreateInstance(CLSID_OsCalibration, nullptr, CLSCTX_LOCAL_SERVER,
                               IID_IOsCalibration, calibration.PutVoid()),
              REGDB_E_CLASSNOTREG);
    EXPECT_EQ(RunCamsim(L"/UnregServer"), 0u) << "unregistering twice";

    ASSERT_EQ(RunCamsim(L"/RegServer"), 0u);
    for (const CLSID* clsid : {&CLSID_OstrelHost, &CLSID_OsCalibration}) {
        EXPECT_TRUE(std::filesystem::equivalent(
            ReadDefaultValue(HKEY_CURRENT_USER, ClassKey(*clsid)), CamsimPath()));
    }
    const auto created = CreateCalibration();
    ASSERT_TRUE(created);
    EXPECT_HRESULT_SUCCEEDED(created->CalIsReady());
}

} // namespace
