// camsim /RegServer and /UnregServer beside another server's registration: a stand-in for the
// makers' server, planted in either store, is never shadowed, changed or removed unless /Force
// asks for it, and camsim's own registration, however its paths are spelled, is still its own.
// camsim.exe runs as a process, as users and the other test prefixes run it.
#include <windows.h>

#include <camsim_control.h>
#include <ostrel_server.h>

#include <algorithm>
#include <cwctype>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "class_stores.h"
#include "program_run.h"
#include "test_files.h"

namespace {

using regtest::kClassesRoot;
using regtest::kStores;
using regtest::kUserClasses;
using regtest::PlantedValue;
using regtest::Store;

const std::wstring kMakerServer = L"C:\\Program Files\\Maker\\server.exe";
// The stand-in's own type library.
constexpr GUID kMakerLibrary = {
    0x5a1c7e2b, 0x3d4f, 0x4a6b, {0x8c, 0x9d, 0x0e, 0x1f, 0x2a, 0x3b, 0x4c, 0x5d}};

std::wstring ClassKey(const CLSID& clsid) {
    return L"CLSID\\" + regtest::GuidText(clsid);
}
std::wstring InterfaceKey(const IID& iid) {
    return L"Interface\\" + regtest::GuidText(iid);
}
std::wstring TypeLibKey(const GUID& library) {
    return L"TypeLib\\" + regtest::GuidText(library);
}

// What camsim registers: the classes, the interfaces with the type library each names, and the
// type libraries with the resource each is.
const CLSID* const kClasses[] = {&CLSID_OstrelHost, &CLSID_OsCalibration};
struct InterfaceEntry {
    const IID& iid;
    const GUID& library;
};
const InterfaceEntry kInterfaces[] = {{IID_IOstrelHost, LIBID_OstrelServerLib},
                                      {IID_IOsCalibration, LIBID_OstrelServerLib},
                                      {IID_ICamSimControl, LIBID_CamSimControlLib}};
struct TypeLibEntry {
    const GUID& library;
    const wchar_t* resource;
};
const TypeLibEntry kTypeLibs[] = {{LIBID_OstrelServerLib, L"1"}, {LIBID_CamSimControlLib, L"2"}};

std::vector<std::wstring> CamsimKeys() {
    std::vector<std::wstring> keys;
    for (const CLSID* clsid : kClasses) {
        keys.push_back(ClassKey(*clsid));
    }
    for (const InterfaceEntry& entry : kInterfaces) {
        keys.push_back(InterfaceKey(entry.iid));
    }
    for (const TypeLibEntry& entry : kTypeLibs) {
        keys.push_back(TypeLibKey(entry.library));
    }
    return keys;
}

// Every key camsim or a stand-in writes.
std::vector<std::wstring> WatchedKeys() {
    std::vector<std::wstring> keys = CamsimKeys();
    keys.push_back(TypeLibKey(kMakerLibrary));
    return keys;
}

std::wstring CamsimPath() {
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    return (std::filesystem::path(self).parent_path() / L"camsim.exe").wstring();
}

bool SamePath(const std::wstring& a, const std::wstring& b) {
    return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_EQUAL;
}

std::string Ascii(const std::wstring& text) {
    return {text.begin(), text.end()};
}

std::wstring Upper(std::wstring text) {
    std::ranges::transform(text, text.begin(), [](wchar_t c) { return std::towupper(c); });
    return text;
}

// The files registered for a type library, every version, locale and platform, in both stores.
std::vector<std::wstring> RegisteredTypeLibPaths(const GUID& library) {
    std::vector<std::wstring> paths;
    for (const auto& [entry, data] : regtest::TakeSnapshot({TypeLibKey(library)})) {
        if (entry.ends_with(L"\\win64[]") || entry.ends_with(L"\\win32[]")) {
            // "<type>:<text>" and the text's terminating null.
            paths.emplace_back(data.c_str() + data.find(L':') + 1);
        }
    }
    return paths;
}

class RegistrationTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(regtest::TakeSnapshot(WatchedKeys()), regtest::Snapshot{})
            << "registry keys left by an earlier test";
    }

    static testfiles::ProgramResult Camsim(const std::vector<std::wstring>& arguments) {
        const testfiles::ScratchFolder work(L"registration");
        return testfiles::RunProgram(L"camsim.exe", arguments, work.Path());
    }

    static void ExpectSuccess(const testfiles::ProgramResult& result) {
        EXPECT_EQ(result.exitCode, 0u);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, "");
    }

    static void PlantAll(const Store& store, const std::vector<PlantedValue>& values) {
        for (const PlantedValue& value : values) {
            ASSERT_EQ(regtest::Plant(store, value), ERROR_SUCCESS) << Ascii(value.key);
        }
    }

    // Both classes served by camsim.exe and nothing else, the interfaces sent to camsim's type
    // libraries, and those registered for camsim.exe alone, in every store.
    static void ExpectRegisteredToCamsim() {
        const std::wstring camsim = CamsimPath();
        for (const Store& store : kStores) {
            SCOPED_TRACE(store.name);
            for (const CLSID* clsid : kClasses) {
                const auto server =
                    regtest::ReadString(store, ClassKey(*clsid) + L"\\LocalServer32");
                ASSERT_TRUE(server.has_value()) << Ascii(ClassKey(*clsid));
                EXPECT_TRUE(SamePath(*server, camsim)) << Ascii(*server);
                EXPECT_FALSE(regtest::KeyExists(store, ClassKey(*clsid) + L"\\InprocServer32"));
            }
            for (const InterfaceEntry& entry : kInterfaces) {
                EXPECT_EQ(regtest::ReadString(store, InterfaceKey(entry.iid) + L"\\TypeLib"),
                          regtest::GuidText(entry.library));
            }
        }
        for (const TypeLibEntry& entry : kTypeLibs) {
            const auto paths = RegisteredTypeLibPaths(entry.library);
            EXPECT_FALSE(paths.empty()) << Ascii(TypeLibKey(entry.library));
            for (const std::wstring& path : paths) {
                EXPECT_TRUE(SamePath(path, camsim + L"\\" + entry.resource)) << Ascii(path);
            }
        }
    }

    static void ExpectNoCamsimKeys() {
        for (const Store& store : kStores) {
            for (const std::wstring& key : CamsimKeys()) {
                EXPECT_FALSE(regtest::KeyExists(store, key)) << store.name << " " << Ascii(key);
            }
        }
    }

    // Deletes whatever a test or camsim wrote, however the test ends.
    const regtest::OwnedKeys mKeys{WatchedKeys()};
};

// With nothing registered before, as the other test prefixes use camsim.
TEST_F(RegistrationTest, RegistersAndUnregistersLeavingNothing) {
    ExpectSuccess(Camsim({L"/RegServer"}));
    ExpectRegisteredToCamsim();

    ExpectSuccess(Camsim({L"/UnregServer"}));
    EXPECT_EQ(regtest::TakeSnapshot(WatchedKeys()), regtest::Snapshot{});
    // What is already gone is no error.
    ExpectSuccess(Camsim({L"/UnregServer"}));
}

TEST_F(RegistrationTest, ForceGoesOnlyAfterRegServer) {
    for (const std::vector<std::wstring>& arguments : {std::vector<std::wstring>{L"/Force"},
                                                       {L"/UnregServer", L"/Force"},
                                                       {L"/Force", L"/RegServer"}}) {
        const auto result = Camsim(arguments);
        EXPECT_EQ(result.exitCode, 2u) << Ascii(arguments[0]);
        EXPECT_TRUE(result.err.starts_with("usage: camsim /RegServer [/Force] | /UnregServer"))
            << result.err;
    }
    EXPECT_EQ(regtest::TakeSnapshot(WatchedKeys()), regtest::Snapshot{});
}

// A server installed over camsim's registration: /UnregServer takes away what still points at
// camsim and leaves the server's keys as they are.
TEST_F(RegistrationTest, UnregServerKeepsAServerInstalledOverIt) {
    ExpectSuccess(Camsim({L"/RegServer"}));
    const std::wstring hostInterface = InterfaceKey(IID_IOstrelHost);
    const std::vector<PlantedValue> installed = {
        {ClassKey(CLSID_OstrelHost) + L"\\LocalServer32", nullptr, kMakerServer},
        {hostInterface + L"\\TypeLib", nullptr, regtest::GuidText(kMakerLibrary)},
        {TypeLibKey(kMakerLibrary) + L"\\1.0\\0\\win64", nullptr, kMakerServer + L"\\1"}};
    PlantAll(kClassesRoot, installed);

    ExpectSuccess(Camsim({L"/UnregServer"}));

    for (const PlantedValue& value : installed) {
        EXPECT_EQ(regtest::ReadString(kClassesRoot, value.key, value.name), value.data)
            << Ascii(value.key);
    }
    EXPECT_FALSE(regtest::KeyExists(kClassesRoot, ClassKey(CLSID_OsCalibration)));
    EXPECT_FALSE(regtest::KeyExists(kClassesRoot, InterfaceKey(IID_IOsCalibration)));
    EXPECT_FALSE(regtest::KeyExists(kUserClasses, ClassKey(CLSID_OstrelHost)));
    EXPECT_FALSE(regtest::KeyExists(kUserClasses, hostInterface));
    for (const TypeLibEntry& entry : kTypeLibs) {
        EXPECT_EQ(RegisteredTypeLibPaths(entry.library), std::vector<std::wstring>{});
    }
}

// A stand-in for another server's registration, and the key camsim's refusal names: the first
// one it would write, classes before interfaces before type libraries.
struct StandIn {
    std::string name;
    std::vector<PlantedValue> values;
    std::wstring namedKey;
    std::wstring namedFile;
};

void PrintTo(const StandIn& standIn, std::ostream* out) {
    *out << standIn.name;
}

std::vector<StandIn> StandIns() {
    const std::wstring host = ClassKey(CLSID_OstrelHost);
    const std::wstring calibration = ClassKey(CLSID_OsCalibration);
    const std::wstring hostInterface = InterfaceKey(IID_IOstrelHost);
    const std::wstring calibrationInterface = InterfaceKey(IID_IOsCalibration);
    const std::wstring makerLibrary = regtest::GuidText(kMakerLibrary);
    const std::wstring makerTypeLib = TypeLibKey(kMakerLibrary) + L"\\1.0\\0\\win64";
    const std::wstring controlVersion = TypeLibKey(LIBID_CamSimControlLib) + L"\\1.0";
    return {
        {"InstalledServer",
         {{host + L"\\LocalServer32", nullptr, kMakerServer},
          {calibration + L"\\LocalServer32", nullptr, kMakerServer},
          {hostInterface + L"\\TypeLib", nullptr, makerLibrary},
          {hostInterface + L"\\TypeLib", L"Version", L"1.0"},
          {calibrationInterface + L"\\TypeLib", nullptr, makerLibrary},
          {calibrationInterface + L"\\TypeLib", L"Version", L"1.0"},
          {makerTypeLib, nullptr, kMakerServer + L"\\1"}},
         host,
         kMakerServer},
        {"ClassQuotedWithArguments",
         {{calibration + L"\\LocalServer32", nullptr, L"\"" + kMakerServer + L"\" -Embedding"}},
         calibration,
         kMakerServer},
        {"ClassInEnvironmentWithArguments",
         {{host + L"\\LocalServer32", nullptr, L"%ProgramFiles%\\Maker\\server.exe /Automation",
           REG_EXPAND_SZ}},
         host,
         kMakerServer},
        {"ClassInProcess",
         {{calibration + L"\\InprocServer32", nullptr, L"C:\\Program Files\\Maker\\server.dll"}},
         calibration,
         L"C:\\Program Files\\Maker\\server.dll"},
        {"InterfaceOfAnotherLibrary",
         {{calibrationInterface + L"\\TypeLib", nullptr, makerLibrary},
          {makerTypeLib, nullptr, kMakerServer + L"\\1"}},
         calibrationInterface,
         kMakerServer},
        {"InterfaceOfOurLibraryElsewhere",
         {{hostInterface + L"\\TypeLib", nullptr, regtest::GuidText(LIBID_OstrelServerLib)},
          {TypeLibKey(LIBID_OstrelServerLib) + L"\\1.0\\0\\win32", nullptr,
           L"C:\\Program Files\\Maker\\server.tlb"}},
         hostInterface,
         L"C:\\Program Files\\Maker\\server.tlb"},
        {"OurLibraryElsewhere",
         {{controlVersion + L"\\0\\win64", nullptr, kMakerServer + L"\\2"}},
         controlVersion,
         kMakerServer},
    };
}

class ForeignRegistrationTest : public RegistrationTest,
                                public testing::WithParamInterface<std::tuple<StandIn, Store>> {
protected:
    void SetUp() override {
        RegistrationTest::SetUp();
        if (!HasFatalFailure()) {
            PlantAll(Where(), Planted().values);
        }
    }

    static const StandIn& Planted() { return std::get<0>(GetParam()); }
    static const Store& Where() { return std::get<1>(GetParam()); }
};

TEST_P(ForeignRegistrationTest, RegServerRefusesAndWritesNothing) {
    const auto before = regtest::TakeSnapshot(WatchedKeys());

    const auto result = Camsim({L"/RegServer"});

    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
    EXPECT_TRUE(result.err.ends_with('\n')) << result.err;
    EXPECT_TRUE(result.err.starts_with("camsim: /RegServer: ")) << result.err;
    EXPECT_NE(result.err.find(Ascii(Planted().namedKey) + " belongs to " +
                              Ascii(Planted().namedFile) + ";"),
              std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("camsim /RegServer /Force"), std::string::npos) << result.err;
    EXPECT_EQ(regtest::TakeSnapshot(WatchedKeys()), before);
}

TEST_P(ForeignRegistrationTest, UnregServerLeavesItAlone) {
    const auto before = regtest::TakeSnapshot(WatchedKeys());

    ExpectSuccess(Camsim({L"/UnregServer"}));

    EXPECT_EQ(regtest::TakeSnapshot(WatchedKeys()), before);
}

TEST_P(ForeignRegistrationTest, ForceReplacesItAndUnregServerThenRemovesCamsim) {
    ExpectSuccess(Camsim({L"/RegServer", L"/Force"}));
    ExpectRegisteredToCamsim();

    ExpectSuccess(Camsim({L"/UnregServer"}));
    ExpectNoCamsimKeys();
}

std::string ForeignName(const testing::TestParamInfo<std::tuple<StandIn, Store>>& info) {
    return std::get<0>(info.param).name + "In" + std::get<1>(info.param).name;
}

INSTANTIATE_TEST_SUITE_P(Stores, ForeignRegistrationTest,
                         testing::Combine(testing::ValuesIn(StandIns()),
                                          testing::ValuesIn(kStores)),
                         ForeignName);

// camsim's own registration written with its path spelled otherwise, in both stores, or with its
// type library no longer registered: still its own, so /RegServer needs no /Force and
// /UnregServer removes it.
struct OwnVariant {
    std::string name;
    std::wstring (*server)(const std::wstring& camsim);  // LocalServer32
    std::wstring (*typeLib)(const std::wstring& camsim); // the server library's path, if any
};

void PrintTo(const OwnVariant& variant, std::ostream* out) {
    *out << variant.name;
}

std::wstring Resource1(const std::wstring& camsim) {
    return camsim + L"\\1";
}

const OwnVariant kOwnVariants[] = {
    {"OtherCase", [](const std::wstring& camsim) { return Upper(camsim); },
     [](const std::wstring& camsim) { return Upper(camsim) + L"\\1"; }},
    {"Quoted", [](const std::wstring& camsim) { return L"\"" + camsim + L"\""; }, Resource1},
    {"QuotedWithArguments",
     [](const std::wstring& camsim) { return L"\"" + Upper(camsim) + L"\" -Embedding"; },
     Resource1},
    {"WithArguments", [](const std::wstring& camsim) { return camsim + L" /Automation"; },
     Resource1},
    {"LibraryUnregistered", [](const std::wstring& camsim) { return camsim; },
     [](const std::wstring&) { return std::wstring(); }},
};

class OwnRegistrationTest : public RegistrationTest,
                            public testing::WithParamInterface<OwnVariant> {
protected:
    void SetUp() override {
        RegistrationTest::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        const std::wstring camsim = CamsimPath();
        const std::wstring hostInterface = InterfaceKey(IID_IOstrelHost);
        for (const Store& store : kStores) {
            PlantAll(store, {{ClassKey(CLSID_OstrelHost) + L"\\LocalServer32", nullptr,
                              GetParam().server(camsim)},
                             {ClassKey(CLSID_OsCalibration) + L"\\LocalServer32", nullptr,
                              GetParam().server(camsim)},
                             {hostInterface + L"\\TypeLib", nullptr,
                              regtest::GuidText(LIBID_OstrelServerLib)}});
        }
        if (const std::wstring typeLib = GetParam().typeLib(camsim); !typeLib.empty()) {
            PlantAll(kClassesRoot,
                     {{TypeLibKey(LIBID_OstrelServerLib) + L"\\1.0\\0\\win64", nullptr, typeLib}});
        }
    }
};

TEST_P(OwnRegistrationTest, RegServerTakesItAsItsOwn) {
    ExpectSuccess(Camsim({L"/RegServer"}));
    ExpectRegisteredToCamsim();
}

TEST_P(OwnRegistrationTest, UnregServerRemovesIt) {
    ExpectSuccess(Camsim({L"/UnregServer"}));
    EXPECT_EQ(regtest::TakeSnapshot(WatchedKeys()), regtest::Snapshot{});
}

INSTANTIATE_TEST_SUITE_P(Variants, OwnRegistrationTest, testing::ValuesIn(kOwnVariants),
                         [](const testing::TestParamInfo<OwnVariant>& info) {
                             return info.param.name;
                         });

} // namespace
