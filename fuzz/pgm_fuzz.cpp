// ReadPgm on any bytes: a frame exactly as large as its header says, or an error.
#include "frame_files.h"
#include "input_file.h"
#include "names.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile input("frame.pgm");
    formats::Frame frame;
    std::string error;
    if (formats::ReadPgm(input.Write(data, size), frame, error)) {
        fuzz::Require(formats::FitsLimits(frame.width, frame.height));
        fuzz::Require(frame.data.size() == frame.PixelCount() * formats::ElementSize(frame.type));
    } else {
        fuzz::Require(!error.empty());
    }
    return 0;
}
