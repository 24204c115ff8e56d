#pragma once

#include <windows.h>

#include <utility>

namespace vz {

// Owns one Windows resource and releases it with Close when it goes out of scope.
template <class Handle, auto Close> class UniqueResource {
public:
    UniqueResource() : m_handle(nullptr) {}
    explicit UniqueResource(Handle handle) : m_handle(handle) {}
    ~UniqueResource() { reset(); }
    UniqueResource(const UniqueResource&) = delete;
    UniqueResource& operator=(const UniqueResource&) = delete;

    Handle get() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr; }

    Handle release() { return std::exchange(m_handle, nullptr); }

    void reset(Handle handle = nullptr) {
        if (m_handle != nullptr) {
            Close(m_handle);
        }
        m_handle = handle;
    }

private:
    Handle m_handle;
};

using UniqueHandle = UniqueResource<HANDLE, &CloseHandle>;
using UniqueWindow = UniqueResource<HWND, &DestroyWindow>;

} // namespace vz
