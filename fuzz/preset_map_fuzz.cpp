// ReadPresetMap on any bytes: every pixel names a preset 0..3, or an error.
#include "input_file.h"
#include "preset_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile input("map.pgm");
    formats::PresetMap map;
    std::string error;
    if (formats::ReadPresetMap(input.Write(data, size), map, error)) {
        fuzz::Require(map.presets.size() == std::size_t{map.width} * map.height);
        for (const unsigned char preset : map.presets) {
            fuzz::Require(preset < vz::kPresetCount);
        }
    } else {
        fuzz::Require(!error.empty());
    }
    return 0;
}
