// camsim /Scene: writes a synthetic frame of counts made through the sample calibration, and
// the temperatures it shows.
#pragma once

#include <span>
#include <string>

namespace camsim {

struct CommandOutcome {
    int exitCode;
    std::string message; // one line to print, empty for none
};

// The arguments after "/Scene": <frame.pgm> <truth.pfm> [--width W] [--height H].
CommandOutcome RunSceneCommand(std::span<const wchar_t* const> arguments);

} // namespace camsim
