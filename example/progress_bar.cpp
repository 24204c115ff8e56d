#include "progress_bar.h"

#include <io.h>

#include <cstdio>
#include <string>

#include "display_name.h"

namespace convert {
namespace {

constexpr std::size_t kBarWidth = 30;
// Wide enough to clear the longest line drawn.
constexpr int kLineWidth = 79;

} // namespace

ProgressBar::ProgressBar(std::size_t total, bool wanted)
    : mTotal(total), mEnabled(wanted && _isatty(_fileno(stderr)) != 0) {}

ProgressBar::~ProgressBar() {
    if (mEnabled) {
        std::fprintf(stderr, "\r%*s\r", kLineWidth, "");
        std::fflush(stderr);
    }
}

void ProgressBar::Show(std::size_t done, const std::filesystem::path& current) {
    if (!mEnabled || mTotal == 0) {
        return;
    }
    const std::size_t filled = kBarWidth * done / mTotal;
    const std::string bar = std::string(filled, '#') + std::string(kBarWidth - filled, '.');
    const std::string name = formats::DisplayName(current.filename());
    std::fprintf(stderr, "\r[%s] %llu/%llu %-30.30s", bar.c_str(),
                 static_cast<unsigned long long>(done), static_cast<unsigned long long>(mTotal),
                 name.c_str());
    std::fflush(stderr);
}

} // namespace convert
