// ostrel-convert: the example host. It converts frames of detector counts into temperatures
// through the camera server's calibration: it connects to the server, loads a factory record per
// preset and the object parameters into a calibration engine, converts each frame by one preset,
// a preset map or pixel keys, writes the results beside the frames and sums up the batch.
#include <iostream>
#include <string>
#include <vector>

#include "program.h"

int wmain(int argc, wchar_t** argv) {
    const std::vector<std::wstring> arguments(argv + 1, argv + argc);
    return convert::Run(arguments, std::cout, std::cerr);
}
