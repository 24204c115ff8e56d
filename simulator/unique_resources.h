// Owners for Windows handles, mapped views, keys, system strings and COM references, so every
// early return releases what was acquired.
#pragma once

#include <objbase.h>
#include <oleauto.h>
#include <windows.h>

#include <utility>

namespace camsim {

// Owns one value of a resource type; `Close` releases it, `Invalid` means "nothing held".
template <typename T, auto Close, T Invalid = T{}> class UniqueResource {
public:
    UniqueResource() = default;
    explicit UniqueResource(T value) : value_(value) {}
    ~UniqueResource() { Reset(); }
    UniqueResource(UniqueResource&& other) noexcept
        : value_(std::exchange(other.value_, Invalid)) {}
    UniqueResource& operator=(UniqueResource&& other) noexcept {
        if (this != &other) {
            Reset(std::exchange(other.value_, Invalid));
        }
        return *this;
    }
    UniqueResource(const UniqueResource&) = delete;
    UniqueResource& operator=(const UniqueResource&) = delete;

    T Get() const { return value_; }
    explicit operator bool() const { return value_ != Invalid; }
    void Reset(T value = Invalid) {
        if (value_ != Invalid) {
            Close(value_);
        }
        value_ = value;
    }
    // For functions that return the resource through a pointer.
    T* Put() {
        Reset();
        return &value_;
    }

private:
    T value_ = Invalid;
};

using UniqueHandle = UniqueResource<HANDLE, &::CloseHandle>;
using UniqueMappedView = UniqueResource<void*, &::UnmapViewOfFile>;
using UniqueKey = UniqueResource<HKEY, &::RegCloseKey>;
using UniqueBstr = UniqueResource<BSTR, &::SysFreeString>;
using UniqueArgv = UniqueResource<LPWSTR*, &::LocalFree>;

// One COM reference.
template <typename T> class ComRef {
public:
    ComRef() = default;
    // Takes over a reference the caller already owns.
    explicit ComRef(T* owned) : pointer_(owned) {}
    ~ComRef() { Reset(); }
    ComRef(ComRef&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComRef& operator=(ComRef&& other) noexcept {
        if (this != &other) {
            Reset();
            pointer_ = std::exchange(other.pointer_, nullptr);
        }
        return *this;
    }
    ComRef(const ComRef&) = delete;
    ComRef& operator=(const ComRef&) = delete;

    T* Get() const { return pointer_; }
    T* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }
    void Reset() {
        if (pointer_ != nullptr) {
            std::exchange(pointer_, nullptr)->Release();
        }
    }
    T** Put() {
        Reset();
        return &pointer_;
    }
    void** PutVoid() { return reinterpret_cast<void**>(Put()); }

private:
    T* pointer_ = nullptr;
};

} // namespace camsim
