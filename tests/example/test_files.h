// Files for the converter's tests: scratch folders, frames written byte by byte, and readers of
// the results written independently of the converter's own code.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace testfiles {

// A new empty folder under the temporary folder, removed with everything in it at the end.
class ScratchFolder {
public:
    explicit ScratchFolder(std::wstring_view name);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return mPath; }
    std::filesystem::path operator/(std::wstring_view name) const { return mPath / name; }

private:
    std::filesystem::path mPath;
};

void WriteBytes(const std::filesystem::path& file, std::string_view bytes);
std::string ReadBytes(const std::filesystem::path& file);
// The names in a folder, sorted; empty for a missing folder.
std::vector<std::wstring> FolderContents(const std::filesystem::path& folder);

// A binary PGM: 8-bit samples for maxval up to 255, else 16-bit big-endian.
void WritePgm(const std::filesystem::path& file, std::uint32_t width, std::uint32_t height,
              const std::vector<std::uint16_t>& samples, unsigned maxval);

// A little-endian grayscale PFM, its rows returned from the top of the image down.
std::vector<float> ReadPfm(const std::filesystem::path& file, std::uint32_t& width,
                           std::uint32_t& height);

struct PngSize {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};
// Zeros when the file is not a PNG.
PngSize ReadPngSize(const std::filesystem::path& file);

} // namespace testfiles
