#include "output_file.h"

#include <windows.h>

#include <utility>

#include "display_name.h"

namespace formats {

OutputFile::~OutputFile() {
    Discard();
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : mTarget(std::move(other.mTarget)), mTemporary(std::exchange(other.mTemporary, {})),
      mStream(std::move(other.mStream)) {}

OutputFile& OutputFile::operator=(OutputFile&& other) noexcept {
    if (this != &other) {
        Discard();
        mTarget = std::move(other.mTarget);
        mTemporary = std::exchange(other.mTemporary, {});
        mStream = std::move(other.mStream);
    }
    return *this;
}

void OutputFile::Discard() {
    if (mTemporary.empty()) {
        return;
    }
    mStream.close();
    DeleteFileW(mTemporary.c_str());
    mTemporary.clear();
}

bool OutputFile::Open(const std::filesystem::path& target, std::string& error) {
    Discard();
    mTarget = target;
    const std::filesystem::path folder =
        target.has_parent_path() ? target.parent_path() : std::filesystem::path(L".");
    // The name is unique in the folder, so runs writing the same target never share one.
    wchar_t name[MAX_PATH];
    if (GetTempFileNameW(folder.c_str(), L"osc", 0, name) == 0) {
        error = DisplayName(target) + ": can't create a file in its folder (error " +
                std::to_string(GetLastError()) + ")";
        return false;
    }
    mTemporary = name;
    mStream.open(mTemporary, std::ios::binary | std::ios::trunc);
    if (!mStream) {
        error = DisplayName(target) + ": can't write a temporary file beside it";
        Discard();
        return false;
    }
    return true;
}

bool OutputFile::Close(std::string& error) {
    if (mStream.is_open()) {
        mStream.close();
    }
    if (mTemporary.empty() || mStream.fail()) {
        error = DisplayName(mTarget) + ": write error";
        Discard();
        return false;
    }
    return true;
}

bool OutputFile::Commit(std::string& error) {
    if (!Close(error)) {
        return false;
    }
    if (!MoveFileExW(mTemporary.c_str(), mTarget.c_str(), MOVEFILE_REPLACE_EXISTING)) {
        error = DisplayName(mTarget) + ": can't be replaced (error " +
                std::to_string(GetLastError()) + ")";
        Discard();
        return false;
    }
    mTemporary.clear();
    return true;
}

void OutputFile::Withdraw() {
    DeleteFileW(mTarget.c_str());
}

bool CommitAll(std::span<OutputFile> files, std::string& error) {
    for (OutputFile& file : files) {
        if (!file.Close(error)) {
            return false;
        }
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!files[i].Commit(error)) {
            for (std::size_t j = 0; j < i; ++j) {
                files[j].Withdraw();
            }
            return false;
        }
    }
    return true;
}

} // namespace formats
