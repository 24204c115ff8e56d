#include "image_writers.h"

#include <bit>
#include <charconv>
#include <string>
#include <vector>

namespace formats {
namespace {

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
    for (std::uint32_t row = height; row-- > 0;) {
        out.write(reinterpret_cast<const char*>(values.data() + std::size_t{row} * width),
                  static_cast<std::streamsize>(width * sizeof(float)));
    }
}

void WriteCsv(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const float> values) {
    std::string line;
    char number[32];
    for (std::uint32_t row = 0; row < height; ++row) {
        line.clear();
        for (std::uint32_t column = 0; column < width; ++column) {
            if (column > 0) {
                line += ',';
            }
            const auto result = std::to_chars(number, number + sizeof(number),
                                              values[std::size_t{row} * width + column]);
            line.append(number, result.ptr);
        }
        line += '\n';
        out << line;
    }
}

} // namespace formats
