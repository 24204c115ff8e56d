// ReadPixelKeys on any bytes: the input's first 4 bytes are the key image's length (32-bit little
// endian, taken modulo what follows), then the key image, then the key table. Every key read
// must lead to a preset 0..3.
#include <cstring>

#include "input_file.h"
#include "preset_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile image("keys.pgm");
    static fuzz::InputFile table("table.txt");
    if (size < 4) {
        return 0;
    }
    std::uint32_t imageSize = 0;
    std::memcpy(&imageSize, data, 4);
    data += 4;
    size -= 4;
    imageSize = static_cast<std::uint32_t>(imageSize % (size + 1));
    formats::PixelKeys keys;
    std::string error;
    if (formats::ReadPixelKeys(image.Write(data, imageSize),
                               table.Write(data + imageSize, size - imageSize), keys, error)) {
        fuzz::Require(keys.keys.size() == std::size_t{keys.width} * keys.height);
        for (const unsigned long key : keys.keys) {
            fuzz::Require(key < keys.keyToPreset.size() &&
                          keys.keyToPreset[key] < vz::kPresetCount);
        }
    } else {
        fuzz::Require(!error.empty());
    }
    return 0;
}
