// camsim's main object, out of process: configured version, events, reserved slots.
#include <string>

#include "event_window.h"
#include "server_session.h"

namespace {

constexpr wchar_t kSettingKey[] = L"Software\\CamSim";
constexpr wchar_t kSettingValue[] = L"ServerVersion";

// Puts back the version setting that was there before the test.
class SavedVersionSetting {
public:
    SavedVersionSetting() {
        DWORD bytes = sizeof(text_);
        saved_ = RegGetValueW(HKEY_CURRENT_USER, kSettingKey, kSettingValue, RRF_RT_REG_SZ, nullptr,
                              text_, &bytes) == ERROR_SUCCESS;
    }
    ~SavedVersionSetting() {
        RegDeleteKeyValueW(HKEY_CURRENT_USER, kSettingKey, kSettingValue);
        if (saved_) {
            RegSetKeyValueW(HKEY_CURRENT_USER, kSettingKey, kSettingValue, REG_SZ, text_,
                            static_cast<DWORD>((wcslen(text_) + 1) * sizeof(wchar_t)));
        }
    }

private:
    bool saved_ = false;
    wchar_t text_[64] = {};
};

struct VersionSetting {
    std::string name;
    DWORD type; // REG_NONE: no value
    std::wstring text;
    ULONG major, minor, build;
};

void PrintTo(const VersionSetting& setting, std::ostream* out) {
    *out << setting.name;
}

class SimulatorHostVersion : public ServerTest,
                             public ::testing::WithParamInterface<VersionSetting> {};

TEST_P(SimulatorHostVersion, ComesFromTheRegistryWhenTheObjectIsCreated) {
    const VersionSetting& setting = GetParam();
    const SavedVersionSetting saved;
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kSettingKey, kSettingValue);
    const DWORD number = 6;
    if (setting.type != REG_NONE) {
        const bool isText = setting.type == REG_SZ;
        ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kSettingKey, kSettingValue, setting.type,
                                  isText ? static_cast<const void*>(setting.text.c_str()) : &number,
                                  isText ? static_cast<DWORD>((setting.text.size() + 1) * 2)
                                         : sizeof(number)),
                  ERROR_SUCCESS);
    }
    const auto host = CreateHost();
    ASSERT_TRUE(host);
    ULONG major = 0, minor = 0, build = 0;
    ASSERT_HRESULT_SUCCEEDED(host->GetServerVersion(&major, &minor, &build));
    EXPECT_EQ(major, setting.major);
    EXPECT_EQ(minor, setting.minor);
    EXPECT_EQ(build, setting.build);
}

INSTANTIATE_TEST_SUITE_P(, SimulatorHostVersion,
                         ::testing::Values(VersionSetting{"Absent", REG_NONE, L"", 5, 92, 0},
                                           VersionSetting{"Older", REG_SZ, L"5.90.3", 5, 90, 3},
                                           VersionSetting{"Newer", REG_SZ, L"6.1.20", 6, 1, 20},
                                           VersionSetting{"TwoParts", REG_SZ, L"5.91", 5, 92, 0},
                                           VersionSetting{"NotAString", REG_DWORD, L"", 5, 92, 0}),
                         [](const auto& info) { return info.param.name; });

class SimulatorHost : public ServerTest {};

TEST_F(SimulatorHost, ReservedSlotsAreNotImplemented) {
    const auto host = CreateHost();
    ASSERT_TRUE(host);
    EXPECT_EQ(host->Reserved005(), E_NOTIMPL);
    EXPECT_EQ(host->Reserved111(), E_NOTIMPL);
    EXPECT_EQ(host->Reserved218(), E_NOTIMPL);
}

TEST_F(SimulatorHost, BothClassesLiveInOneServerProcess) {
    const auto host = CreateHost();
    const auto calibration = CreateCalibration();
    ASSERT_TRUE(host && calibration);
    ULONG hostPid = 0;
    ASSERT_HRESULT_SUCCEEDED(host->SimProcessId(&hostPid));
    EXPECT_NE(hostPid, GetCurrentProcessId());
    EXPECT_EQ(hostPid, ServerProcessId(calibration.Get()));
}

constexpr wchar_t kListenerClass[] = L"wcOstrelEvents";

class SimulatorHostEvents : public ServerTest, public ::testing::WithParamInterface<ULONGLONG> {};

TEST_P(SimulatorHostEvents, ReachTheListenerWithTheFullValue) {
    const ListenerWindow window(kListenerClass);
    ASSERT_TRUE(window.Created());
    const auto host = CreateHost();
    ASSERT_TRUE(host);
    EXPECT_EQ(host->SimPostEvent(GetParam()), S_OK);
    ASSERT_TRUE(PumpMessagesUntil([&] { return !window.Received().empty(); }, 10000));
    ASSERT_EQ(window.Received().size(), 1u);
    EXPECT_EQ(window.Received()[0].message, RegisterWindowMessageW(L"Tamso"));
    EXPECT_EQ(window.Received()[0].wParam, GetParam());
    EXPECT_EQ(window.Received()[0].lParam, 0);
}

INSTANTIATE_TEST_SUITE_P(, SimulatorHostEvents,
                         ::testing::Values(0ull, 42ull, 0xFFFFFFFFFFFFFFFFull));

TEST_F(SimulatorHost, EventReachesEveryListenerAndNoOtherWindow) {
    const ListenerWindow first(kListenerClass), second(kListenerClass);
    const ListenerWindow other(L"wcOstrelEventsNot");
    ASSERT_TRUE(first.Created() && second.Created() && other.Created());
    const auto host = CreateHost();
    ASSERT_TRUE(host);
    ASSERT_EQ(host->SimPostEvent(7), S_OK);
    // The server posts to every window before the call returns, so once both listeners have
    // the event, anything meant for the other window would already be dispatched too.
    ASSERT_TRUE(PumpMessagesUntil(
        [&] { return !first.Received().empty() && !second.Received().empty(); }, 10000));
    EXPECT_EQ(first.Received().size(), 1u);
    EXPECT_EQ(second.Received().size(), 1u);
    EXPECT_TRUE(other.Received().empty());
}

TEST_F(SimulatorHost, EventWithoutListenersReportsThatNobodyGotIt) {
    const auto host = CreateHost();
    ASSERT_TRUE(host);
    EXPECT_EQ(host->SimPostEvent(1), S_FALSE);
}

} // namespace
