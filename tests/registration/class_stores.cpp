#include "class_stores.h"

#include <unique_resource.h>

namespace regtest {
namespace {

std::wstring PathOf(const Store& store, const std::wstring& key) {
    return store.prefix + key;
}

std::wstring Label(const Store& store) {
    return store.root == HKEY_CURRENT_USER ? L"HKCU\\" + std::wstring(store.prefix) : L"HKCR\\";
}

void AddTree(Snapshot& snapshot, const Store& store, const std::wstring& key) {
    owners::UniqueKey opened;
    if (RegOpenKeyExW(store.root, PathOf(store, key).c_str(), 0, KEY_READ, opened.put()) !=
        ERROR_SUCCESS) {
        return;
    }
    DWORD subkeys = 0;
    DWORD longestSubkey = 0;
    DWORD values = 0;
    DWORD longestName = 0;
    DWORD largestData = 0;
    if (RegQueryInfoKeyW(opened.get(), nullptr, nullptr, nullptr, &subkeys, &longestSubkey, nullptr,
                         &values, &longestName, &largestData, nullptr, nullptr) != ERROR_SUCCESS) {
        snapshot[Label(store) + key + L"\\"] = L"unreadable";
        return;
    }
    snapshot[Label(store) + key + L"\\"] = L"";
    for (DWORD index = 0; index < values; ++index) {
        std::wstring name(longestName + 1, L'\0');
        std::wstring data(largestData / sizeof(wchar_t) + 1, L'\0');
        DWORD nameLength = longestName + 1;
        DWORD type = 0;
        auto size = static_cast<DWORD>(data.size() * sizeof(wchar_t));
        if (RegEnumValueW(opened.get(), index, name.data(), &nameLength, nullptr, &type,
                          reinterpret_cast<BYTE*>(data.data()), &size) != ERROR_SUCCESS) {
            continue;
        }
        name.resize(nameLength);
        data.resize((size + 1) / sizeof(wchar_t));
        snapshot[Label(store) + key + L"[" + name + L"]"] = std::to_wstring(type) + L":" + data;
    }
    for (DWORD index = 0; index < subkeys; ++index) {
        std::wstring name(longestSubkey + 1, L'\0');
        DWORD nameLength = longestSubkey + 1;
        if (RegEnumKeyExW(opened.get(), index, name.data(), &nameLength, nullptr, nullptr, nullptr,
                          nullptr) == ERROR_SUCCESS) {
            name.resize(nameLength);
            AddTree(snapshot, store, key + L"\\" + name);
        }
    }
}

} // namespace

std::wstring GuidText(const GUID& guid) {
    wchar_t text[39] = {};
    StringFromGUID2(guid, text, ARRAYSIZE(text));
    return text;
}

LSTATUS Plant(const Store& store, const PlantedValue& value) {
    owners::UniqueKey key;
    LSTATUS status =
        RegCreateKeyExW(store.root, PathOf(store, value.key).c_str(), 0, nullptr,
                        REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, key.put(), nullptr);
    if (status == ERROR_SUCCESS) {
        status = RegSetValueExW(key.get(), value.name, 0, value.type,
                                reinterpret_cast<const BYTE*>(value.data.c_str()),
                                static_cast<DWORD>((value.data.size() + 1) * sizeof(wchar_t)));
    }
    return status;
}

std::optional<std::wstring> ReadString(const Store& store, const std::wstring& key,
                                       const wchar_t* name) {
    const std::wstring path = PathOf(store, key);
    constexpr DWORD kFlags = RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND;
    DWORD size = 0;
    if (RegGetValueW(store.root, path.c_str(), name, kFlags, nullptr, nullptr, &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
    size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(store.root, path.c_str(), name, kFlags, nullptr, text.data(), &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    text.resize(text.find(L'\0'));
    return text;
}

bool KeyExists(const Store& store, const std::wstring& key) {
    owners::UniqueKey opened;
    return RegOpenKeyExW(store.root, PathOf(store, key).c_str(), 0, KEY_READ, opened.put()) ==
           ERROR_SUCCESS;
}

Snapshot TakeSnapshot(const std::vector<std::wstring>& keys) {
    Snapshot snapshot;
    for (const Store& store : kStores) {
        for (const std::wstring& key : keys) {
            AddTree(snapshot, store, key);
        }
    }
    return snapshot;
}

OwnedKeys::~OwnedKeys() {
    for (const Store& store : kStores) {
        for (const std::wstring& key : mKeys) {
            RegDeleteTreeW(store.root, PathOf(store, key).c_str());
        }
    }
}

} // namespace regtest
