// The calling thread's latest failed call of the C interface, in words, for ostrel_last_error.
#pragma once

#include <ostrel_c.h>

namespace c_interface {

// Keeps "<function>: <status text>[: <failure note>]" as the thread's last error and returns
// status.
ostrel_status Failed(const char* function, ostrel_status status) noexcept;

const char* LastError() noexcept;

} // namespace c_interface
