// The calling thread's note of why the library's latest operation failed. The layer that sees a
// cause (an HRESULT, a refused server, a record file's line) writes it; the C interface reports it
// with the call that failed. Writing never throws: a note that can't be stored is dropped.
#pragma once

#include <windows.h>

#include <string>

namespace failure_note {

void Clear() noexcept;
void Write(const char* text) noexcept;
// "<call> failed: HRESULT 0x80040154 (Class not registered)", with the system's text when it
// has one.
void WriteFailedCall(const char* call, HRESULT hr) noexcept;
// The note, or empty.
const std::string& Text() noexcept;

} // namespace failure_note
