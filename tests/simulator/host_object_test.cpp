// camsim's main object, out of process: configured version and events.
#include <string>
#include <vector>

#include "server_session.h"

namespace {

constexpr wchar_t kSettingKey[] = L"Software\\CamSim";
constexpr wchar_t kSettingValue[] = L"ServerVersion";

// Removes the version setting at the end of the test, as the prefix had none.
struct RemoveVersionSetting {
    ~RemoveVersionSetting() { RegDeleteKeyValueW(HKEY_CURRENT_USER, kSettingKey, kSettingValue); }
};

struct VersionSetting {
    std::string name;
    const wchar_t* text; // null: no value
    ULONG major, minor, build;
};

void PrintTo(const VersionSetting& setting, std::ostream* out) {
    *out << setting.name;
}

class SimulatorHostVersion : public ServerTest,
                             public ::testing::WithParamInterface<VersionSetting> {};

TEST_P(SimulatorHostVersion, ComesFromTheRegistryWhenTheObjectIsCreated) {
    const VersionSetting& setting = GetParam();
    const RemoveVersionSetting remove;
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kSettingKey, kSettingValue);
    if (setting.text != nullptr) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kSettingKey, kSettingValue, REG_SZ,
                                  setting.text,
                                  static_cast<DWORD>((wcslen(setting.text) + 1) * sizeof(wchar_t))),
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
                         ::testing::Values(VersionSetting{"Absent", nullptr, 5, 92, 0},
                                           VersionSetting{"Newer", L"6.1.20", 6, 1, 20},
                                           VersionSetting{"TwoParts", L"5.91", 5, 92, 0}),
                         [](const auto& info) { return info.param.name; });

constexpr wchar_t kListenerClass[] = L"wcOstrelEvents";

// A top-level window of the listener class that records the registered messages (ids 0xC000
// and up) it receives.
class ListenerWindow {
public:
    struct Message {
        UINT id;
        WPARAM wParam;
        LPARAM lParam;
    };

    ListenerWindow() {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = Procedure;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = kListenerClass;
        RegisterClassW(&windowClass); // fails harmlessly once an earlier test registered it
        handle_ = CreateWindowExW(0, kListenerClass, L"camsim test listener", 0, 0, 0, 0, 0,
                                  nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        if (handle_ != nullptr) {
            SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        }
    }
    ~ListenerWindow() {
        if (handle_ != nullptr) {
            DestroyWindow(handle_);
        }
    }
    ListenerWindow(const ListenerWindow&) = delete;
    ListenerWindow& operator=(const ListenerWindow&) = delete;

    bool Created() const { return handle_ != nullptr; }
    const std::vector<Message>& Received() const { return received_; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<ListenerWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self != nullptr && id >= 0xC000 && id <= 0xFFFF) {
            self->received_.push_back({id, wParam, lParam});
        }
        return DefWindowProcW(window, id, wParam, lParam);
    }

    HWND handle_ = nullptr;
    std::vector<Message> received_;
};

class SimulatorHostEvents : public ServerTest, public ::testing::WithParamInterface<ULONGLONG> {};

TEST_P(SimulatorHostEvents, ReachTheListenerWithTheFullValue) {
    const ListenerWindow window;
    ASSERT_TRUE(window.Created());
    const auto host = CreateHost();
    ASSERT_TRUE(host);
    EXPECT_EQ(host->SimPostEvent(GetParam()), S_OK);
    // The server posts before the call returns: the event is in this thread's queue by now, if
    // the apartment's wait for the reply has not dispatched it already.
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
    ASSERT_EQ(window.Received().size(), 1u);
    EXPECT_EQ(window.Received()[0].id, RegisterWindowMessageW(L"Tamso"));
    EXPECT_EQ(window.Received()[0].wParam, GetParam());
    EXPECT_EQ(window.Received()[0].lParam, 0);
}

INSTANTIATE_TEST_SUITE_P(, SimulatorHostEvents, ::testing::Values(42ull, 0xFFFFFFFFFFFFFFFFull));

} // namespace
