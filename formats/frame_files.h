// Frames read from files: binary PGM images, or headerless raw data of a given layout.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ostrel_types.h>

namespace formats {

// width × height elements of one type, row by row from the top, in the machine's byte order.
struct Frame {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    vz::EDataType type = vz::UInt16;
    std::vector<std::byte> data;

    std::size_t PixelCount() const { return std::size_t{width} * height; }
};

// The largest frames the readers take: sides up to kLargestSide, and at most kLargestPixelCount
// pixels (a 16384 x 16384 frame), so that a frame and its results fit in memory.
inline constexpr std::uint32_t kLargestSide = 65535;
inline constexpr std::uint64_t kLargestPixelCount = std::uint64_t{1} << 28;
bool FitsLimits(std::uint64_t width, std::uint64_t height);

// A width or height as a command line gives it: a whole number from 1 to kLargestSide.
std::optional<std::uint32_t> ParseSide(std::wstring_view text);

struct RawLayout {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    vz::EDataType type = vz::UInt16;
};

// A binary PGM (P5): a maxval up to 255 gives UInt8 elements, a larger one (up to 65535) UInt16
// elements, stored big-endian in the file. Only the frame is read; bytes after it are ignored.
// Errors start with the file's name.
bool ReadPgm(const std::filesystem::path& file, Frame& frame, std::string& error);
// Little-endian elements; the file must hold exactly one frame of the layout.
bool ReadRaw(const std::filesystem::path& file, const RawLayout& layout, Frame& frame,
             std::string& error);

} // namespace formats
