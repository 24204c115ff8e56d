#include "output_file.h"

#include <windows.h>

#include <utility>

#include "display_name.h"

namespace formats {

OutputFile::~OutputFile() {
    Discard();
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : target_(std::move(other.target_)), temporary_(std::exchange(other.temporary_, {})),
      stream_(std::move(other.stream_)) {}

OutputFile& OutputFile::operator=(OutputFile&& other) noexcept {
    if (this != &other) {
        Discard();
        target_ = std::move(other.target_);
        temporary_ = std::exchange(other.temporary_, {});
        stream_ = std::move(other.stream_);
    }
    return *this;
}

void OutputFile::Discard() {
    if (temporary_.empty()) {
        return;
    }
    stream_.close();
    DeleteFileW(temporary_.c_str());
    temporary_.clear();
}

bool OutputFile::Open(const std::filesystem::path& target, std::string& error) {
    Discard();
    target_ = target;
    const std::filesystem::path folder =
        target.has_parent_path() ? target.parent_path() : std::filesystem::path(L".");
    // The name is unique in the folder, so runs writing the same target never share one.
    wchar_t name[MAX_PATH];
    if (GetTempFileNameW(folder.c_str(), L"osc", 0, name) == 0) {
        error = DisplayName(target) + ": can't create a file in its folder (error " +
                std::to_string(GetLastError()) + ")";
        return false;
    }
    temporary_ = name;
    stream_.open(temporary_, std::ios::binary | std::ios::trunc);
    if (!stream_) {
        error = DisplayName(target) + ": can't write a temporary file beside it";
        Discard();
        return false;
    }
    return true;
}

bool OutputFile::Commit(std::string& error) {
    stream_.close();
    if (temporary_.empty() || stream_.fail()) {
        error = DisplayName(target_) + ": write error";
        Discard();
        return false;
    }
    if (!MoveFileExW(temporary_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        error = DisplayName(target_) + ": can't be replaced (error " +
                std::to_string(GetLastError()) + ")";
        Discard();
        return false;
    }
    temporary_.clear();
    return true;
}

} // namespace formats
