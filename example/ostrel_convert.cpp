// ostrel-convert: the example host. It converts frames of detector counts into temperatures
// through the camera server's calibration: it connects to the server, loads a factory record per
// preset and the object parameters into a calibration engine, converts each frame by one preset,
// a preset map or pixel keys, writes the results beside the frames and sums up the batch.
#include <windows.h>

#include <iostream>
#include <string>
#include <vector>

#include "program.h"

namespace {

// Messages are UTF-8, so that every file name shows as it is; a console shows them so while the
// program runs.
class Utf8Console {
public:
    Utf8Console() : mPrevious(GetConsoleOutputCP()) {
        if (mPrevious != 0) {
            SetConsoleOutputCP(CP_UTF8);
        }
    }
    ~Utf8Console() {
        if (mPrevious != 0) {
            SetConsoleOutputCP(mPrevious);
        }
    }
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    UINT mPrevious;
};

} // namespace

int wmain(int argc, wchar_t** argv) {
    const Utf8Console console;
    const std::vector<std::wstring> arguments(argv + 1, argv + argc);
    return convert::Run(arguments, std::cout, std::cerr);
}
