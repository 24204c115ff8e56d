#include <vz/log.h>

#include <memory>
#include <mutex>
#include <string>

#include "boundary.h"

namespace {

struct LogHandler {
    ostrel_log_callback callback;
    void* context;
};

// The handler the log writes to; replaced only once the log no longer runs the old one.
std::mutex gLogHandlerLock;
std::unique_ptr<LogHandler> gLogHandler;

void WriteToHandler(const wchar_t* line, void* context) {
    const auto* handler = static_cast<const LogHandler*>(context);
    const int size = WideCharToMultiByte(CP_UTF8, 0, line, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) {
        return;
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, line, -1, text.data(), size, nullptr, nullptr);
    handler->callback(handler->context, text.c_str());
}

} // namespace

extern "C" uint32_t ostrel_version(void) {
    return OSTREL_VERSION_NUMBER;
}

extern "C" const char* ostrel_last_error(void) {
    return c_interface::LastError();
}

extern "C" ostrel_status ostrel_set_log_handler(ostrel_log_callback callback, void* context) {
    return c_interface::Guarded(__func__, [&]() -> ostrel_status {
        const std::lock_guard lock(gLogHandlerLock);
        auto handler = callback != nullptr
                           ? std::make_unique<LogHandler>(LogHandler{callback, context})
                           : nullptr;
        vz::gLog->SetWriter(handler ? WriteToHandler : nullptr, handler.get());
        vz::gLog->setVerbose(handler != nullptr);
        gLogHandler = std::move(handler);
        return OSTREL_OK;
    });
}
