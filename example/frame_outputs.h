// The result files of one frame, named after its input: NAME.pfm, NAME.csv, NAME.status.pgm and
// NAME.png in the output folder (by default the input's).
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "frame_conversion.h"
#include "options.h"
#include "output_file.h"

namespace convert {

// Writes every output the options ask for to temporary files and closes them; formats::CommitAll
// then renames them all together. On failure none of them is left. Errors name the file.
bool PrepareFrameOutputs(const Options& options, const std::filesystem::path& input,
                         std::uint32_t width, std::uint32_t height, const Temperatures& result,
                         std::vector<formats::OutputFile>& files, std::string& error);

} // namespace convert
