#include "failure_note.h"

#include <ostrel.h>

#include <cstdio>
#include <utility>

#include "unique_resource.h"

namespace failure_note {
namespace {

thread_local std::string gNote;

// The system's text for an HRESULT, without its line end; empty when it has none.
std::string SystemText(HRESULT hr) {
    owners::UniqueLocal<char*> buffer;
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, static_cast<DWORD>(hr), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
        reinterpret_cast<char*>(buffer.put()), 0, nullptr);
    std::string text(buffer ? buffer.get() : "", buffer ? length : 0);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' ' ||
                             text.back() == '.')) {
        text.pop_back();
    }
    return text;
}

} // namespace

void Clear() noexcept {
    gNote.clear();
}

void Write(const char* text) noexcept {
    try {
        gNote = text;
    } catch (...) {
        gNote.clear();
    }
}

void WriteFailedCall(const char* call, HRESULT hr) noexcept {
    try {
        char code[16];
        std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(hr));
        std::string text = std::string(call) + " failed: HRESULT " + code;
        const std::string system = SystemText(hr);
        if (!system.empty()) {
            text += " (" + system + ")";
        }
        gNote = std::move(text);
    } catch (...) {
        gNote.clear();
    }
}

const std::string& Text() noexcept {
    return gNote;
}

} // namespace failure_note

const char* GetOstrelFailure() {
    return failure_note::Text().c_str();
}
