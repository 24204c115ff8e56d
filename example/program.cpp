#include "program.h"

#include <ostrel.h>

#include <chrono>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "batch_inputs.h"
#include "batch_summary.h"
#include "display_name.h"
#include "engine_setup.h"
#include "frame_conversion.h"
#include "frame_files.h"
#include "frame_outputs.h"
#include "options.h"
#include "pixel_presets.h"
#include "progress_bar.h"
#include "record_files.h"

namespace convert {
namespace {

// Every failure is one line on err.
int Fail(std::ostream& err, const std::string& message) {
    err << "ostrel-convert: " << message << '\n';
    return 1;
}

bool ReadPresetSource(const Options& options, PresetSource& source, std::string& error) {
    switch (options.dispatch) {
    case Dispatch::Uniform:
        source = UniformPreset{options.preset};
        return true;
    case Dispatch::PresetMap:
        return ReadPresetMap(options.presetMap, source.emplace<PresetMap>(), error);
    case Dispatch::Keyed:
        return ReadPixelKeys(options.keys, options.keyTable, source.emplace<PixelKeys>(), error);
    }
    return false;
}

bool ReadFrame(const Options& options, const std::filesystem::path& file, formats::Frame& frame,
               std::string& error) {
    if (options.raw) {
        return formats::ReadRaw(file, *options.raw, frame, error);
    }
    if (!formats::ReadPgm(file, frame, error)) {
        return false;
    }
    if (options.width.value_or(frame.width) != frame.width ||
        options.height.value_or(frame.height) != frame.height) {
        error = formats::DisplayName(file) + ": " + std::to_string(frame.width) + "x" +
                std::to_string(frame.height) + " pixels do not match --width " +
                (options.width ? std::to_string(*options.width) : "(any)") + " --height " +
                (options.height ? std::to_string(*options.height) : "(any)");
        return false;
    }
    return true;
}

// Stops at the first frame that fails. The progress bar is gone when this returns, so that a
// message starts a line of its own.
bool ConvertFiles(const Options& options, vz::CBroadCal& engine, const PresetSource& source,
                  const std::vector<std::filesystem::path>& files, BatchSummary& summary,
                  std::string& error) {
    ProgressBar progress(files.size());
    formats::Frame frame;
    Temperatures result;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::filesystem::path& file = files[i];
        progress.Show(i, file);
        if (!ReadFrame(options, file, frame, error) || !MatchesFrame(source, frame, file, error)) {
            return false;
        }
        const auto start = std::chrono::steady_clock::now();
        if (!ConvertFrame(engine, source, frame, options.unit, result)) {
            error = formats::DisplayName(file) +
                    ": the camera server failed to build the temperature tables";
            return false;
        }
        const std::chrono::duration<double, std::milli> elapsed =
            std::chrono::steady_clock::now() - start;
        if (!WriteFrameOutputs(options, file, frame.width, frame.height, result, error)) {
            return false;
        }
        summary.Add(result.values, result.status, elapsed.count());
    }
    return true;
}

int RunWith(const Options& options, std::ostream& out, std::ostream& err) {
    std::string error;
    PresetSource source;
    Calibration calibration;
    std::vector<std::filesystem::path> files;
    if (!ReadPresetSource(options, source, error)) {
        return Fail(err, error);
    }
    const PresetFlags used = PresetsUsed(source);
    if (!ReadCalibration(options, used, formats::SamplesFolder(), calibration, error) ||
        !ExpandInputs(options.inputs, options.raw ? L".raw" : L".pgm", files, error)) {
        return Fail(err, error);
    }
    std::error_code code;
    if (options.outFolder && !std::filesystem::is_directory(*options.outFolder, code) &&
        !std::filesystem::create_directories(*options.outFolder, code)) {
        return Fail(err, "--out " + formats::DisplayName(*options.outFolder) +
                             ": can't create the folder");
    }

    COstrel host = GetOstrel();
    unsigned long major = 0, minor = 0, build = 0;
    if (!host || !GetOstrelVersion(major, minor, build)) {
        return Fail(err, "can't connect to the camera server (is it registered, 5.90.4 or newer?)");
    }
    out << "Connected to camera server " << major << '.' << minor << '.' << build << ".\n";

    vz::CBroadCal engine;
    if (!LoadIntoEngine(engine, calibration, options.lutUnit, options.dispatch, used, error)) {
        return Fail(err, error);
    }
    BatchSummary summary;
    if (!ConvertFiles(options, engine, source, files, summary, error)) {
        return Fail(err, error);
    }
    summary.Print(out, options.unit);
    return 0;
}

} // namespace

int Run(std::span<const std::wstring> arguments, std::ostream& out, std::ostream& err) {
    // Whatever is thrown ends here as one line; the outputs not committed are gone by then.
    try {
        Options options;
        std::string error;
        if (!ParseOptions(arguments, options, error)) {
            return Fail(err, error);
        }
        if (options.help) {
            out << Usage();
            return 0;
        }
        return RunWith(options, out, err);
    } catch (const std::bad_alloc&) {
        return Fail(err, "out of memory");
    } catch (const std::exception& failure) {
        return Fail(err, failure.what());
    }
}

} // namespace convert
