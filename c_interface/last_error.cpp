#include "last_error.h"

#include <string>

#include "failure_note.h"

namespace c_interface {
namespace {

thread_local std::string gLastError;
// The function whose failure could not be put into words for want of memory.
thread_local const char* gUnworded = nullptr;

} // namespace

ostrel_status Failed(const char* function, ostrel_status status) noexcept {
    try {
        std::string text = std::string(function) + ": " + ostrel_status_text(status);
        const std::string& note = failure_note::Text();
        if (!note.empty()) {
            text += ": " + note;
        }
        gLastError = std::move(text);
        gUnworded = nullptr;
    } catch (...) {
        gUnworded = function;
    }
    failure_note::Clear();
    return status;
}

const char* LastError() noexcept {
    return gUnworded != nullptr ? gUnworded : gLastError.c_str();
}

} // namespace c_interface
