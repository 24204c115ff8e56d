#include "registration.h"

#include <oleauto.h>

#include <camsim_control.h>
#include <ostrel_server.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <unique_resource.h>
#include <wrl/client.h>

#if defined(__MINGW32__)
// MinGW-w64's oleauto.h lacks the per-user type-library call that its import library has.
extern "C" {
DECLSPEC_IMPORT HRESULT STDAPICALLTYPE RegisterTypeLibForUser(ITypeLib* typeLib, OLECHAR* fullPath,
                                                              OLECHAR* helpDirectory);
}
#endif

namespace camsim {

namespace {

// The type-library marshaler's proxy/stub class.
constexpr wchar_t kTypeLibMarshaler[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr wchar_t kProbeKey[] = L"CamSim.UserClassesProbe";

struct ClassEntry {
    const CLSID& clsid;
    const wchar_t* description;
};
const ClassEntry kClasses[] = {
    {CLSID_OstrelHost, L"Camera server main object (simulator)"},
    {CLSID_OsCalibration, L"Camera server calibration object (simulator)"},
};

// The executable's TYPELIB resources: the server's interfaces, and the simulator's controls.
enum TypeLibResource { kServerTypeLib, kControlTypeLib, kTypeLibCount };

struct InterfaceEntry {
    const IID& iid;
    const wchar_t* name;
    TypeLibResource typeLib;
};
const InterfaceEntry kInterfaces[] = {
    {IID_IOstrelHost, L"IOstrelHost", kServerTypeLib},
    {IID_IOsCalibration, L"IOsCalibration", kServerTypeLib},
    {IID_ICamSimControl, L"ICamSimControl", kControlTypeLib},
};

// A place where class registrations live: a root key and the path of the store below it.
struct ClassStore {
    HKEY root;
    std::wstring prefix;
};

struct Value {
    std::wstring key;
    const wchar_t* name; // null for the key's default value
    std::wstring data;
};

std::wstring GuidText(const GUID& guid) {
    wchar_t text[39] = {};
    StringFromGUID2(guid, text, ARRAYSIZE(text));
    return text;
}

std::wstring ExecutablePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) {
            return {};
        }
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

// Windows shows the user's HKCU\Software\Classes through HKEY_CLASSES_ROOT, where COM looks
// classes up. Wine has no per-user class store: there COM reads only what is written through
// HKEY_CLASSES_ROOT itself, so registration writes there too. A volatile key tells which.
bool ClassesRootShowsUserClasses() {
    // The store itself must exist first: a volatile key would make missing parents volatile.
    owners::UniqueKey userClasses;
    owners::UniqueKey probe;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr,
                        REG_OPTION_NON_VOLATILE, KEY_CREATE_SUB_KEY, nullptr, userClasses.put(),
                        nullptr) != ERROR_SUCCESS ||
        RegCreateKeyExW(userClasses.get(), kProbeKey, 0, nullptr, REG_OPTION_VOLATILE, KEY_READ,
                        nullptr, probe.put(), nullptr) != ERROR_SUCCESS) {
        return true;
    }
    owners::UniqueKey seen;
    const bool visible =
        RegOpenKeyExW(HKEY_CLASSES_ROOT, kProbeKey, 0, KEY_READ, seen.put()) == ERROR_SUCCESS;
    RegDeleteKeyW(userClasses.get(), kProbeKey);
    return visible;
}

std::vector<ClassStore> TargetStores() {
    std::vector<ClassStore> stores{{HKEY_CURRENT_USER, L"Software\\Classes\\"}};
    if (!ClassesRootShowsUserClasses()) {
        stores.push_back({HKEY_CLASSES_ROOT, L""});
    }
    return stores;
}

// The stores registration writes to, then HKEY_CLASSES_ROOT if it is not one of them: on Windows
// it shows the machine's classes too, which the user's registration would shadow.
std::vector<ClassStore> InspectedStores(const std::vector<ClassStore>& targets) {
    std::vector<ClassStore> stores = targets;
    if (std::ranges::none_of(stores,
                             [](const ClassStore& s) { return s.root == HKEY_CLASSES_ROOT; })) {
        stores.push_back({HKEY_CLASSES_ROOT, L""});
    }
    return stores;
}

// The type libraries embedded in this executable, with their identities.
struct EmbeddedTypeLib {
    std::wstring path; // the executable's path, then the resource's number
    Microsoft::WRL::ComPtr<ITypeLib> library;
    TLIBATTR attributes{};
};
using EmbeddedTypeLibs = std::array<EmbeddedTypeLib, kTypeLibCount>;

// As the type-library keys name versions: hexadecimal.
std::wstring VersionText(const TLIBATTR& library) {
    wchar_t text[16] = {};
    swprintf(text, ARRAYSIZE(text), L"%x.%x", library.wMajorVerNum, library.wMinorVerNum);
    return text;
}

std::vector<Value> RegistrationValues(const std::wstring& executable,
                                      const EmbeddedTypeLibs& typeLibs) {
    std::vector<Value> values;
    for (const auto& entry : kClasses) {
        const std::wstring key = L"CLSID\\" + GuidText(entry.clsid);
        values.push_back({key, nullptr, entry.description});
        values.push_back({key + L"\\LocalServer32", nullptr, executable});
    }
    for (const auto& entry : kInterfaces) {
        const TLIBATTR& library = typeLibs[entry.typeLib].attributes;
        const std::wstring key = L"Interface\\" + GuidText(entry.iid);
        values.push_back({key, nullptr, entry.name});
        values.push_back({key + L"\\ProxyStubClsid32", nullptr, kTypeLibMarshaler});
        values.push_back({key + L"\\TypeLib", nullptr, GuidText(library.guid)});
        values.push_back({key + L"\\TypeLib", L"Version", VersionText(library)});
    }
    return values;
}

HRESULT WriteValue(const ClassStore& store, const Value& value) {
    owners::UniqueKey key;
    LSTATUS status =
        RegCreateKeyExW(store.root, (store.prefix + value.key).c_str(), 0, nullptr,
                        REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, key.put(), nullptr);
    if (status == ERROR_SUCCESS) {
        const auto bytes = static_cast<DWORD>((value.data.size() + 1) * sizeof(wchar_t));
        status = RegSetValueExW(key.get(), value.name, 0, REG_SZ,
                                reinterpret_cast<const BYTE*>(value.data.c_str()), bytes);
    }
    return HRESULT_FROM_WIN32(status);
}

HRESULT DeleteKeyTree(const ClassStore& store, const std::wstring& key) {
    const LSTATUS status = RegDeleteTreeW(store.root, (store.prefix + key).c_str());
    return status == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(status);
}

HRESULT LoadEmbeddedTypeLibs(const std::wstring& executable, EmbeddedTypeLibs& loaded) {
    for (int index = 0; index < kTypeLibCount; ++index) {
        EmbeddedTypeLib& typeLib = loaded[index];
        // Resources count from 1.
        typeLib.path = executable + L"\\" + std::to_wstring(index + 1);
        HRESULT hr = LoadTypeLibEx(typeLib.path.c_str(), REGKIND_NONE, &typeLib.library);
        if (FAILED(hr)) {
            return hr;
        }
        TLIBATTR* attributes = nullptr;
        hr = typeLib.library->GetLibAttr(&attributes);
        if (FAILED(hr)) {
            return hr;
        }
        typeLib.attributes = *attributes;
        typeLib.library->ReleaseTLibAttr(attributes);
    }
    return S_OK;
}

// This executable's path and the type libraries it embeds.
RegistrationResult FindTypeLibs(std::wstring& executable, EmbeddedTypeLibs& typeLibs) {
    executable = ExecutablePath();
    if (executable.empty()) {
        return {HRESULT_FROM_WIN32(GetLastError()), "finding camsim.exe's path"};
    }
    if (const HRESULT hr = LoadEmbeddedTypeLibs(executable, typeLibs); FAILED(hr)) {
        return {hr, "loading the embedded type libraries"};
    }
    return {S_OK, ""};
}

// A string value, REG_EXPAND_SZ expanded; nothing when the key or the value is missing.
std::optional<std::wstring> ReadString(const ClassStore& store, const std::wstring& key,
                                       const wchar_t* name = nullptr) {
    const std::wstring path = store.prefix + key;
    DWORD bytes = 0;
    LSTATUS status;
    std::wstring text;
    do {
        text.resize(bytes / sizeof(wchar_t) + 1);
        bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        status = RegGetValueW(store.root, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text.data(),
                              &bytes);
    } while (status == ERROR_MORE_DATA);
    if (status != ERROR_SUCCESS) {
        return std::nullopt;
    }
    text.resize(wcsnlen(text.c_str(), text.size()));
    return text;
}

std::vector<std::wstring> SubkeyNames(const ClassStore& store, const std::wstring& key) {
    std::vector<std::wstring> names;
    owners::UniqueKey opened;
    if (RegOpenKeyExW(store.root, (store.prefix + key).c_str(), 0, KEY_ENUMERATE_SUB_KEYS,
                      opened.put()) != ERROR_SUCCESS) {
        return names;
    }
    wchar_t name[256]; // the longest key name the registry allows, and its end
    for (DWORD index = 0;; ++index) {
        DWORD length = ARRAYSIZE(name);
        if (RegEnumKeyExW(opened.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            return names;
        }
        names.emplace_back(name, length);
    }
}

bool SameFile(std::wstring_view a, std::wstring_view b) {
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

std::wstring_view TrimSpaces(std::wstring_view text) {
    const auto first = text.find_first_not_of(L" \t");
    if (first == std::wstring_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

// The file a LocalServer32 or InprocServer32 value names: a quoted path, or else an unquoted one
// up to the first ".exe" that ends a word, since the path may hold spaces and arguments follow.
std::wstring CommandFile(std::wstring_view command) {
    command = TrimSpaces(command);
    if (command.starts_with(L'"')) {
        const auto closing = command.find(L'"', 1);
        return std::wstring(command.substr(1, closing == command.npos ? closing : closing - 1));
    }
    constexpr std::wstring_view kExe = L".exe";
    for (std::size_t end = kExe.size(); end <= command.size(); ++end) {
        if (SameFile(command.substr(end - kExe.size(), kExe.size()), kExe) &&
            (end == command.size() || command[end] == L' ' || command[end] == L'\t')) {
            return std::wstring(command.substr(0, end));
        }
    }
    return std::wstring(command);
}

// A registered type library is a file, or a TYPELIB resource of one as "<file>\<number>".
std::wstring TypeLibFile(std::wstring path) {
    const auto slash = path.find_last_of(L'\\');
    if (slash != path.npos &&
        std::all_of(path.begin() + static_cast<std::ptrdiff_t>(slash) + 1, path.end(),
                    [](wchar_t c) { return c >= L'0' && c <= L'9'; })) {
        path.resize(slash);
    }
    return path;
}

// Whom a registration points at: nobody, this executable, or another file.
struct KeyTarget {
    enum Kind { kNobody, kThisExecutable, kOther } kind = kNobody;
    std::wstring file; // for kOther
};

KeyTarget TargetOf(const std::vector<std::wstring>& files, const std::wstring& executable) {
    KeyTarget target;
    for (const std::wstring& file : files) {
        if (!SameFile(file, executable)) {
            return {KeyTarget::kOther, file};
        }
        target.kind = KeyTarget::kThisExecutable;
    }
    return target;
}

// The files a type library's registrations name, in any of the stores; every version of it when
// `version` is empty.
std::vector<std::wstring> TypeLibFiles(const std::vector<ClassStore>& stores,
                                       const std::wstring& library, const std::wstring& version) {
    std::vector<std::wstring> files;
    const std::wstring libraryKey = L"TypeLib\\" + library;
    for (const ClassStore& store : stores) {
        const std::vector<std::wstring> versions =
            version.empty() ? SubkeyNames(store, libraryKey) : std::vector{version};
        for (const std::wstring& versionName : versions) {
            const std::wstring versionKey = libraryKey + L"\\" + versionName;
            // Below the version: one key per locale, and FLAGS and HELPDIR, which hold no files.
            for (const std::wstring& locale : SubkeyNames(store, versionKey)) {
                for (const wchar_t* platform : {L"win64", L"win32"}) {
                    if (auto path =
                            ReadString(store, versionKey + L"\\" + locale + L"\\" + platform)) {
                        files.push_back(TypeLibFile(std::move(*path)));
                    }
                }
            }
        }
    }
    return files;
}

KeyTarget ClassTarget(const ClassStore& store, const std::wstring& key,
                      const std::wstring& executable) {
    std::vector<std::wstring> files;
    for (const wchar_t* server : {L"\\LocalServer32", L"\\InprocServer32"}) {
        if (const auto command = ReadString(store, key + server)) {
            files.push_back(CommandFile(*command));
        }
    }
    return TargetOf(files, executable);
}

// An interface key points where the type library it names is registered; one that names our
// type library where none is registered is a remnant of ours.
KeyTarget InterfaceTarget(const ClassStore& store, const std::wstring& key,
                          const std::vector<ClassStore>& stores, const std::wstring& executable,
                          const EmbeddedTypeLibs& typeLibs) {
    const auto library = ReadString(store, key + L"\\TypeLib");
    if (!library) {
        return {};
    }
    const std::wstring version = ReadString(store, key + L"\\TypeLib", L"Version").value_or(L"");
    KeyTarget target = TargetOf(TypeLibFiles(stores, *library, version), executable);
    if (target.kind == KeyTarget::kNobody &&
        std::ranges::any_of(typeLibs, [&](const EmbeddedTypeLib& typeLib) {
            return SameFile(GuidText(typeLib.attributes.guid), *library);
        })) {
        target.kind = KeyTarget::kThisExecutable;
    }
    return target;
}

std::wstring TypeLibKey(const EmbeddedTypeLib& typeLib) {
    return L"TypeLib\\" + GuidText(typeLib.attributes.guid) + L"\\" +
           VersionText(typeLib.attributes);
}

// A key registration writes, in one store, and whom it points at there.
struct SurveyedKey {
    std::size_t store; // index into the inspected stores
    std::wstring key;
    bool typeLib; // a type library's version key
    KeyTarget target;
};

std::vector<SurveyedKey> Survey(const std::vector<ClassStore>& stores,
                                const std::wstring& executable, const EmbeddedTypeLibs& typeLibs) {
    std::vector<SurveyedKey> keys;
    for (const auto& entry : kClasses) {
        const std::wstring key = L"CLSID\\" + GuidText(entry.clsid);
        for (std::size_t store = 0; store < stores.size(); ++store) {
            keys.push_back({store, key, false, ClassTarget(stores[store], key, executable)});
        }
    }
    for (const auto& entry : kInterfaces) {
        const std::wstring key = L"Interface\\" + GuidText(entry.iid);
        for (std::size_t store = 0; store < stores.size(); ++store) {
            keys.push_back({store, key, false,
                            InterfaceTarget(stores[store], key, stores, executable, typeLibs)});
        }
    }
    for (const EmbeddedTypeLib& typeLib : typeLibs) {
        const std::wstring guid = GuidText(typeLib.attributes.guid);
        const std::wstring version = VersionText(typeLib.attributes);
        for (std::size_t store = 0; store < stores.size(); ++store) {
            keys.push_back({store, TypeLibKey(typeLib), true,
                            TargetOf(TypeLibFiles({stores[store]}, guid, version), executable)});
        }
    }
    return keys;
}

HRESULT DeleteSurveyedKey(const ClassStore& store, const SurveyedKey& surveyed) {
    const HRESULT hr = DeleteKeyTree(store, surveyed.key);
    if (SUCCEEDED(hr) && surveyed.typeLib) {
        // The library's key goes with its last version.
        const std::wstring library = surveyed.key.substr(0, surveyed.key.rfind(L'\\'));
        if (SubkeyNames(store, library).empty()) {
            RegDeleteKeyW(store.root, (store.prefix + library).c_str());
        }
    }
    return hr;
}

} // namespace

RegistrationResult RegisterServer(ForeignKeys foreignKeys) {
    std::wstring executable;
    EmbeddedTypeLibs typeLibs;
    if (const RegistrationResult found = FindTypeLibs(executable, typeLibs); FAILED(found.result)) {
        return found;
    }
    const std::vector<ClassStore> targets = TargetStores();
    const std::vector<ClassStore> stores = InspectedStores(targets);
    for (const SurveyedKey& surveyed : Survey(stores, executable, typeLibs)) {
        if (surveyed.target.kind != KeyTarget::kOther) {
            continue;
        }
        if (foreignKeys == ForeignKeys::kRefuse) {
            return {HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), "checking for other servers' keys",
                    ForeignKey{surveyed.key, surveyed.target.file}};
        }
        // What another server left beside the values we write (an InprocServer32, a type
        // library's other platform) would still send clients to it.
        if (surveyed.store < targets.size()) {
            if (const HRESULT hr = DeleteSurveyedKey(targets[surveyed.store], surveyed);
                FAILED(hr)) {
                return {hr, "deleting other servers' keys"};
            }
        }
    }
    for (EmbeddedTypeLib& typeLib : typeLibs) {
        if (const HRESULT hr =
                RegisterTypeLibForUser(typeLib.library.Get(), typeLib.path.data(), nullptr);
            FAILED(hr)) {
            return {hr, "registering the type libraries"};
        }
    }
    const auto values = RegistrationValues(executable, typeLibs);
    for (const auto& store : targets) {
        for (const auto& value : values) {
            if (const HRESULT hr = WriteValue(store, value); FAILED(hr)) {
                return {hr, "writing the class and interface keys"};
            }
        }
    }
    return {S_OK, ""};
}

RegistrationResult UnregisterServer() {
    std::wstring executable;
    EmbeddedTypeLibs typeLibs;
    if (const RegistrationResult found = FindTypeLibs(executable, typeLibs); FAILED(found.result)) {
        return found;
    }
    const std::vector<ClassStore> targets = TargetStores();
    const std::vector<ClassStore> stores = InspectedStores(targets);
    // Surveyed before anything goes: an interface key is known to be ours by its type library.
    for (const SurveyedKey& key : Survey(stores, executable, typeLibs)) {
        if (key.target.kind != KeyTarget::kThisExecutable || key.store >= targets.size()) {
            continue;
        }
        if (const HRESULT hr = DeleteSurveyedKey(targets[key.store], key); FAILED(hr)) {
            return {hr, "deleting the class, interface and type-library keys"};
        }
    }
    return {S_OK, ""};
}

} // namespace camsim
