// ReadRaw on any bytes: the input's first 9 bytes are the layout (width and height as 32-bit
// little-endian numbers, the element type's code), the rest is the file.
#include <cstring>

#include "frame_files.h"
#include "input_file.h"
#include "names.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile input("frame.raw");
    constexpr std::size_t kLayoutBytes = 9;
    if (size < kLayoutBytes) {
        return 0;
    }
    formats::RawLayout layout;
    std::memcpy(&layout.width, data, 4);
    std::memcpy(&layout.height, data + 4, 4);
    layout.type = static_cast<vz::EDataType>(data[8] % 10);
    formats::Frame frame;
    std::string error;
    if (formats::ReadRaw(input.Write(data + kLayoutBytes, size - kLayoutBytes), layout, frame,
                         error)) {
        fuzz::Require(frame.data.size() == size - kLayoutBytes);
        fuzz::Require(frame.data.size() == frame.PixelCount() * formats::ElementSize(frame.type));
    } else {
        fuzz::Require(!error.empty());
    }
    return 0;
}
