// The frames of a batch through one engine on several threads, with the outputs and the summary
// exactly as one thread would leave them.
#pragma once

#include <ostrel.h>

#include <filesystem>
#include <string>
#include <vector>

#include "batch_summary.h"
#include "options.h"
#include "pixel_presets.h"

namespace convert {

// The first frame is converted alone: it brings the engine's tables up to date, and the engine
// then only reads them, so that `jobs` threads may share it. Each frame's outputs appear, and the
// summary counts it, in input order; the first frame that fails stops the batch with its error,
// and no later frame leaves an output.
bool ConvertBatch(const Options& options, unsigned jobs, vz::CBroadCal& engine,
                  const PresetSource& source, const std::vector<std::filesystem::path>& files,
                  BatchSummary& summary, std::string& error);

} // namespace convert
