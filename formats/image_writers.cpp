#include "image_writers.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <string>
#include <vector>

namespace formats {
namespace {

// A file stream hands every write of a kilobyte or more to the system at once, so rows are
// gathered into blocks of about this size first.
constexpr std::size_t kBlockBytes = std::size_t{1} << 20;

void WritePgmHeader(std::ostream& out, std::uint32_t width, std::uint32_t height, unsigned maxval) {
    out << "P5\n" << width << ' ' << height << '\n' << maxval << '\n';
}

} // namespace

void WritePgm(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const std::uint8_t> samples, unsigned maxval) {
    WritePgmHeader(out, width, height, maxval);
    out.write(reinterpret_cast<const char*>(samples.data()),
              static_cast<std::streamsize>(samples.size()));
}

void WritePgm(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const std::uint16_t> samples) {
    WritePgmHeader(out, width, height, 65535);
    std::vector<char> bytes;
    bytes.reserve(samples.size() * 2);
    for (const std::uint16_t sample : samples) {
        bytes.push_back(static_cast<char>(sample >> 8));
        bytes.push_back(static_cast<char>(sample & 0xFF));
    }
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void WritePfm(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const float> values) {
    static_assert(std::endian::native == std::endian::little);
    out << "Pf\n" << width << ' ' << height << "\n-1.0\n";
    // Bottom row first.
    const std::size_t rowsPerBlock =
        std::max<std::size_t>(1, kBlockBytes / sizeof(float) / std::max(width, 1u));
    std::vector<float> block;
    block.reserve(std::min<std::size_t>(rowsPerBlock, height) * width);
    for (std::uint32_t row = height; row-- > 0;) {
        const float* first = values.data() + std::size_t{row} * width;
        block.insert(block.end(), first, first + width);
        if (block.size() >= rowsPerBlock * width || row == 0) {
            out.write(reinterpret_cast<const char*>(block.data()),
                      static_cast<std::streamsize>(block.size() * sizeof(float)));
            block.clear();
        }
    }
}

void WriteCsv(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const float> values) {
    std::string text;
    char number[32];
    for (std::uint32_t row = 0; row < height; ++row) {
        for (std::uint32_t column = 0; column < width; ++column) {
            if (column > 0) {
                text += ',';
            }
            const auto result = std::to_chars(number, number + sizeof(number),
                                              values[std::size_t{row} * width + column]);
            text.append(number, result.ptr);
        }
        text += '\n';
        if (text.size() >= kBlockBytes || row + 1 == height) {
            out << text;
            text.clear();
        }
    }
}

} // namespace formats
