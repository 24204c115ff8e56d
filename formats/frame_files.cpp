#include "frame_files.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <optional>
#include <utility>

#include "display_name.h"
#include "names.h"

namespace formats {
namespace {

// A frame file read piece by piece, so that only what its header promises is ever read.
class FrameFile {
public:
    bool Open(const std::filesystem::path& file, std::string& error) {
        mName = DisplayName(file);
        // The size is read through the open file: one lookup of the name fewer.
        mIn.open(file, std::ios::binary | std::ios::ate);
        const std::streamoff end = mIn ? static_cast<std::streamoff>(mIn.tellg()) : -1;
        mSize = static_cast<std::uint64_t>(std::max<std::streamoff>(end, 0));
        if (end < 0) {
            error = mName + ": can't be opened";
            return false;
        }
        return true;
    }
    std::uint64_t Size() const { return mSize; }
    const std::string& Name() const { return mName; }
    // count bytes from offset, which the caller has found inside the file.
    bool Read(std::uint64_t offset, std::size_t count, std::vector<std::byte>& bytes,
              std::string& error) {
        bytes.resize(count);
        mIn.seekg(static_cast<std::streamoff>(offset));
        if (!mIn.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count))) {
            error = mName + ": read error";
            return false;
        }
        return true;
    }

private:
    std::string mName;
    std::ifstream mIn;
    std::uint64_t mSize = 0;
};

// Where a PGM header must end: a longer one is taken as malformed.
constexpr std::uint64_t kLargestPgmHeader = 65536;

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
    FrameFile in;
    std::vector<std::byte> head;
    if (!in.Open(file, error) ||
        !in.Read(0, static_cast<std::size_t>(std::min(in.Size(), kLargestPgmHeader)), head,
                 error)) {
        return false;
    }
    const std::string& name = in.Name();
    if (head.size() < 2 || head[0] != std::byte{'P'} || head[1] != std::byte{'5'}) {
        error = name + ": not a binary PGM image (P5)";
        return false;
    }
    HeaderReader header(head);
    const auto width = header.Number();
    const auto height = header.Number();
    const auto maxval = header.Number();
    if (!width || !height || !maxval || !header.EndOfHeader()) {
        error = name + ": malformed PGM header";
        return false;
    }
    if (!FitsLimits(*width, *height) || *maxval == 0 || *maxval > 65535) {
        error = name + ": PGM size " + std::to_string(*width) + "x" + std::to_string(*height) +
                " or maxval " + std::to_string(*maxval) + " out of range";
        return false;
    }
    // Bytes after the frame (a next image, say) are not read.
    const bool wide = *maxval > 255;
    const std::uint64_t expected = std::uint64_t{*width} * *height * (wide ? 2 : 1);
    const std::uint64_t available = in.Size() - header.Position();
    if (available < expected) {
        error = name + ": truncated: " + std::to_string(available) + " bytes of pixel data, " +
                std::to_string(expected) + " expected";
        return false;
    }
    if (!in.Read(header.Position(), static_cast<std::size_t>(expected), frame.data, error)) {
        return false;
    }
    frame.width = *width;
    frame.height = *height;
    frame.type = wide ? vz::UInt16 : vz::UInt8;
    if (wide) {
        // Big-endian samples, swapped in a loop the compiler turns into vector shuffles.
        for (std::size_t i = 0; i < frame.data.size(); i += 2) {
            std::uint16_t sample;
            std::memcpy(&sample, &frame.data[i], 2);
            sample = static_cast<std::uint16_t>(sample << 8 | sample >> 8);
            std::memcpy(&frame.data[i], &sample, 2);
        }
    }
    return true;
}

bool ReadRaw(const std::filesystem::path& file, const RawLayout& layout, Frame& frame,
             std::string& error) {
    FrameFile in;
    if (!in.Open(file, error)) {
        return false;
    }
    if (!FitsLimits(layout.width, layout.height)) {
        error = in.Name() + ": " + Describe(layout) + " is more than " +
                std::to_string(kLargestPixelCount) + " pixels";
        return false;
    }
    const std::uint64_t expected =
        std::uint64_t{layout.width} * layout.height * ElementSize(layout.type);
    if (in.Size() != expected) {
        error = in.Name() + (in.Size() < expected ? ": truncated: " : ": ") +
                std::to_string(in.Size()) + " bytes, but " + Describe(layout) + " needs " +
                std::to_string(expected);
        return false;
    }
    if (!in.Read(0, static_cast<std::size_t>(expected), frame.data, error)) {
        return false;
    }
    frame.width = layout.width;
    frame.height = layout.height;
    frame.type = layout.type;
    return true;
}

bool FitsLimits(std::uint64_t width, std::uint64_t height) {
    return width != 0 && height != 0 && width <= kLargestSide && height <= kLargestSide &&
           width * height <= kLargestPixelCount;
}

} // namespace formats
