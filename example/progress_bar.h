// A progress bar for a batch, drawn on stderr only when stderr is a terminal, so redirected
// output holds only the messages.
#pragma once

#include <cstddef>
#include <filesystem>

namespace convert {

class ProgressBar {
public:
    // Shown only when wanted and standard error is a console.
    ProgressBar(std::size_t total, bool wanted);
    // Clears the bar's line.
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // Shows `done` frames of the total finished, and the frame now being converted.
    void Show(std::size_t done, const std::filesystem::path& current);

private:
    std::size_t mTotal;
    bool mEnabled;
};

} // namespace convert
