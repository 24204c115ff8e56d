// The connection to the simulator's main object: version floor, Pleora check, sharing across
// threads and teardown, with the connection's module state in view.
#include <ostrel.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <vz/log.h>

#include <rendezvous.h>

#include "host_connection.h"
#include "lock_probe.h"
#include "module_state.h"

namespace {

const wchar_t kSimulatorKey[] = L"Software\\CamSim";

// The version the simulator reports for host objects created while this lives.
class SimulatorVersion {
public:
    explicit SimulatorVersion(const std::wstring& version) {
        RegSetKeyValueW(HKEY_CURRENT_USER, kSimulatorKey, L"ServerVersion", REG_SZ, version.c_str(),
                        DWORD((version.size() + 1) * sizeof(wchar_t)));
    }
    ~SimulatorVersion() { RegDeleteKeyValueW(HKEY_CURRENT_USER, kSimulatorKey, L"ServerVersion"); }
};

// Puts one flavour of CyCamLib.dll on the search path (as the current directory) while it lives.
class CyCamLibOnPath {
public:
    explicit CyCamLibOnPath(const std::string& flavour) {
        wchar_t exe[MAX_PATH];
        GetModuleFileNameW(nullptr, exe, MAX_PATH);
        const auto folder =
            std::filesystem::path(exe).parent_path().parent_path() / "cycamlib" / flavour;
        GetCurrentDirectoryW(MAX_PATH, mPrevious);
        EXPECT_TRUE(std::filesystem::exists(folder / "CyCamLib.dll")) << folder;
        SetCurrentDirectoryW(folder.c_str());
    }
    ~CyCamLibOnPath() { SetCurrentDirectoryW(mPrevious); }

private:
    wchar_t mPrevious[MAX_PATH];
};

// Collects what the in-house log writes.
class LogCapture {
public:
    explicit LogCapture(bool verbose) {
        vz::gLog->setVerbose(verbose);
        vz::gLog->SetWriter(
            [](const wchar_t* line, void* lines) {
                static_cast<std::vector<std::wstring>*>(lines)->push_back(line);
            },
            &mLines);
    }
    ~LogCapture() {
        vz::gLog->SetWriter(nullptr, nullptr);
        vz::gLog->setVerbose(false);
    }
    const std::vector<std::wstring>& Lines() const { return mLines; }

private:
    std::vector<std::wstring> mLines;
};

const std::wstring kPleoraLine =
    L"Pleora / Ostrel incompatibility detected, refusing to create ostrel instance";

void ExpectNoConnectionState() {
    EXPECT_EQ(nullptr, gOstrelHost);
    EXPECT_EQ(nullptr, gInterfaceTable);
    EXPECT_EQ(0u, gHostRefs.load());
}

struct VersionCase {
    const wchar_t* server;
    const char* cyCamLib; // flavour on the search path, or nullptr for none
    bool connects;
    bool verboseLog = true; // a refusal is logged only when the log is verbose
};

// What GetOstrelFailure says after a GetOstrel with this case.
std::string ExpectedFailure(const VersionCase& c) {
    const std::string server = std::filesystem::path(c.server).string();
    if (c.connects) {
        return "";
    }
    if (c.cyCamLib == nullptr) { // without the library only the version floor refuses
        return "the camera server is version " + server + ", older than 5.90.4";
    }
    return "the camera server's version does not match its CyCamLib.dll";
}

void PrintTo(const VersionCase& c, std::ostream* os) {
    *os << std::filesystem::path(c.server).string() << " with CyCamLib "
        << (c.cyCamLib ? c.cyCamLib : "absent") << (c.verboseLog ? "" : ", quiet log");
}

class ConnectionRules : public testing::TestWithParam<VersionCase> {};

TEST_P(ConnectionRules, DecideWhetherTheServerIsUsed) {
    const VersionCase& c = GetParam();
    SimulatorVersion version(c.server);
    std::unique_ptr<CyCamLibOnPath> library;
    if (c.cyCamLib != nullptr) {
        library = std::make_unique<CyCamLibOnPath>(c.cyCamLib);
    }
    LogCapture log(c.verboseLog);
    {
        COstrel host = GetOstrel();
        EXPECT_EQ(c.connects, static_cast<bool>(host));
        EXPECT_EQ(ExpectedFailure(c), GetOstrelFailure());
        unsigned long major = 0, minor = 0, build = 0;
        EXPECT_EQ(c.connects, GetOstrelVersion(major, minor, build));
        const bool pleoraRefusal = !c.connects && c.cyCamLib != nullptr &&
                                   std::wstring(c.server) >= L"5.90.4" && c.verboseLog;
        EXPECT_EQ(pleoraRefusal ? std::vector<std::wstring>{kPleoraLine}
                                : std::vector<std::wstring>{},
                  log.Lines());
        COstrel empty;
        EXPECT_EQ(c.connects, empty.Get());
        EXPECT_EQ(ExpectedFailure(c), GetOstrelFailure());
    }
    ExpectNoConnectionState();
}

INSTANTIATE_TEST_SUITE_P(
    Matrix, ConnectionRules,
    testing::Values(VersionCase{L"5.90.3", nullptr, false}, VersionCase{L"5.89.99", nullptr, false},
                    VersionCase{L"4.99.99", nullptr, false}, VersionCase{L"5.90.4", nullptr, true},
                    VersionCase{L"5.91.0", nullptr, true}, VersionCase{L"6.0.0", nullptr, true},
                    VersionCase{L"5.90.7", "3.1", true}, VersionCase{L"5.91.2", "3.1", false},
                    VersionCase{L"6.0.0", "3.1", false}, VersionCase{L"5.91.0", "3.3", true},
                    VersionCase{L"5.92.5", "3.3", true}, VersionCase{L"5.90.4", "3.3", false},
                    VersionCase{L"5.93.0", "3.3", false},
                    VersionCase{L"5.93.0", "unversioned", true},
                    VersionCase{L"5.91.0", "3.1", false, false}));

TEST(Connection, ARefusedConnectionIsTriedAgainFromTheStart) {
    {
        SimulatorVersion old(L"5.90.3");
        EXPECT_FALSE(GetOstrel());
    }
    COstrel host = GetOstrel();
    ASSERT_TRUE(host);
    unsigned long major = 0, minor = 0, build = 0;
    EXPECT_TRUE(GetOstrelVersion(major, minor, build));
}

TEST(Connection, HandlesCountTheirReferences) {
    COstrel a;
    EXPECT_TRUE(a == 0);
    ULONG major = 0, minor = 0, build = 0;
    EXPECT_EQ(S_OK, a->GetServerVersion(&major, &minor, &build)) << "an empty handle connects";
    EXPECT_TRUE(a != 0);
    EXPECT_EQ(1u, gHostRefs.load());
    COstrel b = a;
    COstrel c;
    c = b;
    EXPECT_EQ(3u, gHostRefs.load());
    c = 5;
    EXPECT_TRUE(c);
    c = 0;
    EXPECT_FALSE(c);
    b.Release();
    EXPECT_EQ(1u, gHostRefs.load());
    for (COstrel* handle : {&a, &b}) {
        EXPECT_FALSE(*handle == 1);
        EXPECT_FALSE(*handle != 1);
    }
    a.Release();
    ExpectNoConnectionState();
}

// Threads that each connect, call and let go at once, with no handle held in between, so that
// first connections race each other and last releases. A thread's handle and its copy hold the
// connection's pointer on its creator's thread until the copy swaps it for a proxy of its own.
TEST(Connection, ThreadsConnectAndReleaseAtOnce) {
    constexpr int kThreads = 8;
    threading::Rendezvous started(kThreads);
    threading::Rendezvous finished(kThreads);
    std::atomic<int> answered{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&] {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            started.ArriveAndWait();
            for (int i = 0; i < 25; ++i) {
                COstrel host = GetOstrel();
                COstrel copy = host;
                if (!copy) {
                    continue;
                }
                COstrel::CMarshalProxy call = copy.operator->();
                ULONG major = 0, minor = 0, build = 0;
                if (call.operator->() != nullptr &&
                    call->GetServerVersion(&major, &minor, &build) == S_OK && minor == 92) {
                    ++answered;
                }
            }
            // No apartment ends while another thread may still use a connection made in it.
            finished.ArriveAndWait();
            CoUninitialize();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_GT(answered.load(), 0);
    ExpectNoConnectionState();
}

// Counts the references proxies take and give back. A proxy calls nothing but AddRef and
// Release on its pointer, so IUnknown's three slots stand in for the server's main object.
class CountedObject : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++mRefs; }
    ULONG STDMETHODCALLTYPE Release() override { return --mRefs; }
    IOstrelHost* AsHost() { return reinterpret_cast<IOstrelHost*>(static_cast<IUnknown*>(this)); }

    ULONG mRefs = 1;
};

// Each proxy and each copy owns a reference and the lock while it lives; one made without a
// connection holds nothing and lets go of nothing.
TEST(Connection, ProxiesOwnOneReferenceEach) {
    ExpectNoConnectionState();
    CountedObject object;
    {
        COstrel::CMarshalProxy call(object.AsHost());
        COstrel::CMarshalProxy copy(call);
        const COstrel::CMarshalProxy unconnected;
        EXPECT_EQ(3u, object.mRefs);
        EXPECT_EQ(object.AsHost(), copy.operator->());
        EXPECT_EQ(nullptr, COstrel::CMarshalProxy(unconnected).operator->());
        EXPECT_FALSE(FreeForOtherThreads());
    }
    EXPECT_EQ(1u, object.mRefs);
    EXPECT_TRUE(FreeForOtherThreads());
}

// A call holds the library-wide lock for its expression, and may be made while holding it;
// assigning one lock to another takes or releases nothing.
TEST(Connection, ACallHoldsTheLockAndNestsInsideIt) {
    COstrel host = GetOstrel();
    ASSERT_TRUE(host);
    ULONG major = 0, minor = 0, build = 0;
    {
        COstrelLock outer;
        {
            COstrelLock inner;
            EXPECT_EQ(S_OK, host->GetServerVersion(&major, &minor, &build));
            outer = inner;
        }
        EXPECT_FALSE(FreeForOtherThreads()) << "leaving the inner scope released the outer one";
    }
    EXPECT_TRUE(FreeForOtherThreads());
    {
        COstrel::CMarshalProxy call = host.operator->();
        EXPECT_FALSE(FreeForOtherThreads());
    }
    EXPECT_TRUE(FreeForOtherThreads());
}

} // namespace
