// The two places camsim's registration writes to under Wine, read and written by the tests on
// their own: values planted and read back, snapshots of whole key trees, and keys the tests own.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace regtest {

struct Store {
    HKEY root;
    const wchar_t* prefix; // the store's path below the root, ending in a backslash
    const char* name;      // for test names
};
inline const Store kUserClasses{HKEY_CURRENT_USER, L"Software\\Classes\\", "UserClasses"};
inline const Store kClassesRoot{HKEY_CLASSES_ROOT, L"", "ClassesRoot"};
inline const Store kStores[] = {kUserClasses, kClassesRoot};

inline void PrintTo(const Store& store, std::ostream* out) {
    *out << store.name;
}

std::wstring GuidText(const GUID& guid);

struct PlantedValue {
    std::wstring key;
    const wchar_t* name; // null for the key's default value
    std::wstring data;
    DWORD type = REG_SZ;
};

// ERROR_SUCCESS, or why the key or value could not be written.
LSTATUS Plant(const Store& store, const PlantedValue& value);

// A REG_SZ or REG_EXPAND_SZ value as stored; nothing when the key or the value is missing.
std::optional<std::wstring> ReadString(const Store& store, const std::wstring& key,
                                       const wchar_t* name = nullptr);
bool KeyExists(const Store& store, const std::wstring& key);

// Every key and value below the given keys, in both stores: "<store>\<key>\" for each key and
// "<store>\<key>[<value name>]" -> "<type>:<data>" for each value.
using Snapshot = std::map<std::wstring, std::wstring>;
Snapshot TakeSnapshot(const std::vector<std::wstring>& keys);

// Keys a test owns: deleted from both stores, with everything below them, when the owner goes.
class OwnedKeys {
public:
    explicit OwnedKeys(std::vector<std::wstring> keys) : mKeys(std::move(keys)) {}
    ~OwnedKeys();
    OwnedKeys(const OwnedKeys&) = delete;
    OwnedKeys& operator=(const OwnedKeys&) = delete;

    const std::vector<std::wstring>& Keys() const { return mKeys; }

private:
    std::vector<std::wstring> mKeys;
};

} // namespace regtest
