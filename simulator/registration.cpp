#include "registration.h"

#include <oleauto.h>

#include <camsim_control.h>
#include <ostrel_server.h>

#include <array>
#include <string>
#include <vector>

#include <unique_resource.h>
#include <wrl/client.h>

#if defined(__MINGW32__)
// MinGW-w64's oleauto.h lacks the per-user type-library calls that its import library has.
extern "C" {
DECLSPEC_IMPORT HRESULT STDAPICALLTYPE RegisterTypeLibForUser(ITypeLib* typeLib, OLECHAR* fullPath,
                                                              OLECHAR* helpDirectory);
DECLSPEC_IMPORT HRESULT STDAPICALLTYPE UnRegisterTypeLibForUser(REFGUID library, WORD major,
                                                                WORD minor, LCID locale,
                                                                SYSKIND kind);
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

std::vector<std::wstring> OwnedKeys() {
    std::vector<std::wstring> keys;
    for (const auto& entry : kClasses) {
        keys.push_back(L"CLSID\\" + GuidText(entry.clsid));
    }
    for (const auto& entry : kInterfaces) {
        keys.push_back(L"Interface\\" + GuidText(entry.iid));
    }
    return keys;
}

// The type libraries embedded in this executable, with their identities.
struct EmbeddedTypeLib {
    std::wstring path; // the executable's path, then the resource's number
    Microsoft::WRL::ComPtr<ITypeLib> library;
    TLIBATTR attributes{};
};
using EmbeddedTypeLibs = std::array<EmbeddedTypeLib, kTypeLibCount>;

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
        const std::wstring version =
            std::to_wstring(library.wMajorVerNum) + L"." + std::to_wstring(library.wMinorVerNum);
        const std::wstring key = L"Interface\\" + GuidText(entry.iid);
        values.push_back({key, nullptr, entry.name});
        values.push_back({key + L"\\ProxyStubClsid32", nullptr, kTypeLibMarshaler});
        values.push_back({key + L"\\TypeLib", nullptr, GuidText(library.guid)});
        values.push_back({key + L"\\TypeLib", L"Version", version});
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

} // namespace

RegistrationResult RegisterServer() {
    std::wstring executable;
    EmbeddedTypeLibs typeLibs;
    if (const RegistrationResult found = FindTypeLibs(executable, typeLibs); FAILED(found.result)) {
        return found;
    }
    for (EmbeddedTypeLib& typeLib : typeLibs) {
        if (const HRESULT hr =
                RegisterTypeLibForUser(typeLib.library.Get(), typeLib.path.data(), nullptr);
            FAILED(hr)) {
            return {hr, "registering the type libraries"};
        }
    }
    const auto values = RegistrationValues(executable, typeLibs);
    for (const auto& store : TargetStores()) {
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
    for (const EmbeddedTypeLib& typeLib : typeLibs) {
        const TLIBATTR& library = typeLib.attributes;
        // Asked first because the error for "not registered" differs between Windows and Wine.
        owners::UniqueBstr registeredPath;
        if (FAILED(QueryPathOfRegTypeLib(library.guid, library.wMajorVerNum, library.wMinorVerNum,
                                         library.lcid, registeredPath.put()))) {
            continue;
        }
        if (const HRESULT hr =
                UnRegisterTypeLibForUser(library.guid, library.wMajorVerNum, library.wMinorVerNum,
                                         library.lcid, library.syskind);
            FAILED(hr)) {
            return {hr, "unregistering the type libraries"};
        }
    }
    for (const auto& store : TargetStores()) {
        for (const auto& key : OwnedKeys()) {
            if (const HRESULT deleted = DeleteKeyTree(store, key); FAILED(deleted)) {
                return {deleted, "deleting the class and interface keys"};
            }
        }
    }
    return {S_OK, ""};
}

} // namespace camsim
