// Owners for the kernel objects, mapped views and system strings the engine holds: each one is
// owned from the moment it is acquired, so an early return releases it.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <utility>

namespace vz::detail {

// Owns one value of a resource and releases it with Close unless it is Empty.
template <class Value, class Traits> class UniqueResource {
public:
    UniqueResource() = default;
    explicit UniqueResource(Value value) : mValue(value) {}
    UniqueResource(UniqueResource&& other) noexcept : mValue(std::exchange(other.mValue, {})) {}
    UniqueResource& operator=(UniqueResource&& other) noexcept {
        if (this != &other) {
            reset(std::exchange(other.mValue, {}));
        }
        return *this;
    }
    ~UniqueResource() { reset(); }

    Value get() const { return mValue; }
    explicit operator bool() const { return !Traits::Empty(mValue); }

    void reset(Value value = {}) {
        if (!Traits::Empty(mValue)) {
            Traits::Close(mValue);
        }
        mValue = value;
    }

private:
    Value mValue{};
};

struct HandleTraits {
    // CreateFileMapping reports failure with null, other calls with INVALID_HANDLE_VALUE.
    static bool Empty(HANDLE h) { return h == nullptr || h == INVALID_HANDLE_VALUE; }
    static void Close(HANDLE h) { CloseHandle(h); }
};

template <class T> struct ViewTraits {
    static bool Empty(T* view) { return view == nullptr; }
    static void Close(T* view) { UnmapViewOfFile(view); }
};

struct BstrTraits {
    static bool Empty(BSTR text) { return text == nullptr; }
    static void Close(BSTR text) { SysFreeString(text); }
};

using UniqueHandle = UniqueResource<HANDLE, HandleTraits>;
template <class T> using UniqueView = UniqueResource<T*, ViewTraits<T>>;
using UniqueBstr = UniqueResource<BSTR, BstrTraits>;

} // namespace vz::detail
