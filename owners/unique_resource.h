// One owner for every kind of Windows resource the project holds: a value that is released when
// its owner goes, so an early return releases everything acquired before it. A policy says what
// the empty value is and how a held value is closed; each resource kind is a one-line alias.
//
// The verbs are those of the standard smart pointers: get, reset, release, and put for an
// out-parameter (it empties the owner first, so nothing held is overwritten).
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <utility>

namespace owners {

template <class Policy> class UniqueResource {
public:
    using Value = typename Policy::Value;

    UniqueResource() = default;
    explicit UniqueResource(Value value) noexcept : mValue(value) {}
    UniqueResource(UniqueResource&& other) noexcept : mValue(other.release()) {}
    UniqueResource& operator=(UniqueResource&& other) noexcept {
        if (this != &other) {
            reset(other.release());
        }
        return *this;
    }
    UniqueResource(const UniqueResource&) = delete;
    UniqueResource& operator=(const UniqueResource&) = delete;
    ~UniqueResource() { reset(); }

    Value get() const noexcept { return mValue; }
    explicit operator bool() const noexcept { return mValue != Policy::Empty(); }

    void reset(Value value = Policy::Empty()) noexcept {
        if (mValue != Policy::Empty()) {
            Policy::Close(mValue);
        }
        mValue = value;
    }
    [[nodiscard]] Value release() noexcept { return std::exchange(mValue, Policy::Empty()); }
    Value* put() noexcept {
        reset();
        return &mValue;
    }

private:
    Value mValue = Policy::Empty();
};

// Resources whose empty value is null (or zero).
template <class T, auto CloseFn> struct NullEmpty {
    using Value = T;
    static constexpr T Empty() noexcept { return T{}; }
    static void Close(T value) noexcept { CloseFn(value); }
};

// Handles whose failure value is INVALID_HANDLE_VALUE (files, snapshots, find handles).
template <auto CloseFn> struct InvalidEmpty {
    using Value = HANDLE;
    static HANDLE Empty() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(HANDLE value) noexcept { CloseFn(value); }
};

using UniqueHandle = UniqueResource<NullEmpty<HANDLE, &::CloseHandle>>;
using UniqueFile = UniqueResource<InvalidEmpty<&::CloseHandle>>;
template <class T> using UniqueView = UniqueResource<NullEmpty<T*, &::UnmapViewOfFile>>;
using UniqueBstr = UniqueResource<NullEmpty<BSTR, &::SysFreeString>>;
using UniqueWindow = UniqueResource<NullEmpty<HWND, &::DestroyWindow>>;
using UniqueFind = UniqueResource<InvalidEmpty<&::FindClose>>;
using UniqueModule = UniqueResource<NullEmpty<HMODULE, &::FreeLibrary>>;
using UniqueKey = UniqueResource<NullEmpty<HKEY, &::RegCloseKey>>;
template <class T> using UniqueLocal = UniqueResource<NullEmpty<T, &::LocalFree>>;

} // namespace owners
