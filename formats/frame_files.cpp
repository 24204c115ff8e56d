#include "frame_files.h"

#include <cctype>
#include <fstream>
#include <optional>
#include <utility>

#include "display_name.h"
#include "names.h"

namespace formats {
namespace {

bool ReadWholeFile(const std::filesystem::path& file, std::vector<std::byte>& bytes,
                   std::string& error) {
    std::ifstream in(file, std::ios::binary);
    std::error_code code;
    const auto size = std::filesystem::file_size(file, code);
    if (!in || code) {
        error = DisplayName(file) + ": can't be opened";
        return false;
    }
    bytes.resize(size);
    if (!in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size))) {
        error = DisplayName(file) + ": read error";
        return false;
    }
    return true;
}

// Walks a PGM header: whitespace and "#" comments may come before every number.
class HeaderReader {
public:
    explicit HeaderReader(const std::vector<std::byte>& bytes) : mBytes(bytes) {}

    std::optional<std::uint32_t> Number() {
        SkipSpaceAndComments();
        std::uint64_t value = 0;
        const std::size_t start = mPosition;
        while (mPosition < mBytes.size() && std::isdigit(Peek()) && value <= UINT32_MAX) {
            value = value * 10 + static_cast<unsigned>(Peek() - '0');
            ++mPosition;
        }
        if (mPosition == start || value > UINT32_MAX) {
            return std::nullopt;
        }
        return static_cast<std::uint32_t>(value);
    }
    // The one whitespace character between the header and the samples.
    bool EndOfHeader() {
        if (mPosition >= mBytes.size() || !std::isspace(Peek())) {
            return false;
        }
        ++mPosition;
        return true;
    }
    std::size_t Position() const { return mPosition; }

private:
    unsigned char Peek() const { return static_cast<unsigned char>(mBytes[mPosition]); }

    void SkipSpaceAndComments() {
        while (mPosition < mBytes.size()) {
            if (Peek() == '#') {
                while (mPosition < mBytes.size() && Peek() != '\n') {
                    ++mPosition;
                }
            } else if (std::isspace(Peek())) {
                ++mPosition;
            } else {
                return;
            }
        }
    }

    const std::vector<std::byte>& mBytes;
    std::size_t mPosition = 2; // after the magic number
};

std::string Describe(const RawLayout& layout) {
    return "--width " + std::to_string(layout.width) + " x --height " +
           std::to_string(layout.height) + " of " + ElementTypeName(layout.type);
}

} // namespace

std::optional<std::uint32_t> ParseSide(std::wstring_view text) {
    std::uint32_t value = 0;
    for (const wchar_t digit : text) {
        if (digit < L'0' || digit > L'9') {
            return std::nullopt;
        }
        value = value * 10 + static_cast<std::uint32_t>(digit - L'0');
        if (value > kLargestSide) {
            return std::nullopt;
        }
    }
    if (value == 0) {
        return std::nullopt;
    }
    return value;
}

bool ReadPgm(const std::filesystem::path& file, Frame& frame, std::string& error) {
    std::vector<std::byte> bytes;
    if (!ReadWholeFile(file, bytes, error)) {
        return false;
    }
    const std::string name = DisplayName(file);
    if (bytes.size() < 2 || bytes[0] != std::byte{'P'} || bytes[1] != std::byte{'5'}) {
        error = name + ": not a binary PGM image (P5)";
        return false;
    }
    HeaderReader header(bytes);
    const auto width = header.Number();
    const auto height = header.Number();
    const auto maxval = header.Number();
    if (!width || !height || !maxval || !header.EndOfHeader()) {
        error = name + ": malformed PGM header";
        return false;
    }
    if (*width == 0 || *height == 0 || *maxval == 0 || *maxval > 65535) {
        error = name + ": PGM size " + std::to_string(*width) + "x" + std::to_string(*height) +
                " or maxval " + std::to_string(*maxval) + " out of range";
        return false;
    }
    const bool wide = *maxval > 255;
    const std::uint64_t expected = std::uint64_t{*width} * *height * (wide ? 2 : 1);
    const std::size_t available = bytes.size() - header.Position();
    if (available < expected) {
        error = name + ": truncated: " + std::to_string(available) + " bytes of pixel data, " +
                std::to_string(expected) + " expected";
        return false;
    }
    frame.width = *width;
    frame.height = *height;
    frame.type = wide ? vz::UInt16 : vz::UInt8;
    const auto samples = bytes.begin() + static_cast<std::ptrdiff_t>(header.Position());
    frame.data.assign(samples, samples + static_cast<std::ptrdiff_t>(expected));
    if (wide) {
        for (std::size_t i = 0; i < frame.data.size(); i += 2) {
            std::swap(frame.data[i], frame.data[i + 1]);
        }
    }
    return true;
}

bool ReadRaw(const std::filesystem::path& file, const RawLayout& layout, Frame& frame,
             std::string& error) {
    std::vector<std::byte> bytes;
    if (!ReadWholeFile(file, bytes, error)) {
        return false;
    }
    const std::uint64_t expected =
        std::uint64_t{layout.width} * layout.height * ElementSize(layout.type);
    if (bytes.size() != expected) {
        error = DisplayName(file) + (bytes.size() < expected ? ": truncated: " : ": ") +
                std::to_string(bytes.size()) + " bytes, but " + Describe(layout) + " needs " +
                std::to_string(expected);
        return false;
    }
    frame.width = layout.width;
    frame.height = layout.height;
    frame.type = layout.type;
    frame.data = std::move(bytes);
    return true;
}

} // namespace formats
