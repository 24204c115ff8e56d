// Output that appears under its name only when complete: it is written to a temporary file in
// the same folder and renamed over the final name by Commit. An output that is not committed,
// or whose commit fails, leaves neither the temporary nor the final file behind.
#pragma once

#include <filesystem>
#include <fstream>
#include <span>
#include <string>

namespace formats {

class OutputFile {
public:
    OutputFile() = default;
    ~OutputFile();
    OutputFile(OutputFile&& other) noexcept;
    OutputFile& operator=(OutputFile&& other) noexcept;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // Creates the temporary file beside target. False with a message naming target.
    bool Open(const std::filesystem::path& target, std::string& error);
    std::ostream& Stream() { return mStream; }
    // Closes the temporary file, leaving only the rename to Commit. False with a message naming
    // the target when writing failed.
    bool Close(std::string& error);
    // Closes the temporary file and renames it over the target. False with a message naming
    // the target when writing or renaming failed.
    bool Commit(std::string& error);

private:
    // Removes the committed target again.
    void Withdraw();
    void Discard();

    friend bool CommitAll(std::span<OutputFile> files, std::string& error);

    std::filesystem::path mTarget;
    std::filesystem::path mTemporary;
    std::ofstream mStream;
};

// Commits every file or none: all are written out before the first is renamed, and when a rename
// fails the files already renamed are removed again.
bool CommitAll(std::span<OutputFile> files, std::string& error);

} // namespace formats
