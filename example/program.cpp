#include "program.h"

#include <ostrel.h>

#include <algorithm>
#include <exception>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "batch_conversion.h"
#include "batch_inputs.h"
#include "batch_summary.h"
#include "display_name.h"
#include "engine_setup.h"
#include "library_version.h"
#include "options.h"
#include "pixel_presets.h"
#include "record_files.h"

namespace convert {
namespace {

// The exit codes, as CLI11's programs have them.
constexpr int kFailed = 1;
constexpr int kUsageError = 2;

// Every failure is one line on err.
int Fail(std::ostream& err, const std::string& message, int exitCode = kFailed) {
    err << "ostrel-convert: " << message << '\n';
    return exitCode;
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
        !ExpandInputs(options.inputs, options.type ? L".raw" : L".pgm", files, error)) {
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
    if (!options.quiet) {
        out << "Connected to camera server " << major << '.' << minor << '.' << build << ".\n";
    }

    vz::CBroadCal engine;
    if (!LoadIntoEngine(engine, calibration, options.lutUnit, options.dispatch, used, error)) {
        return Fail(err, error);
    }
    const unsigned jobs =
        options.jobs != 0 ? options.jobs : std::max(1u, std::thread::hardware_concurrency());
    BatchSummary summary;
    if (!ConvertBatch(options, jobs, engine, source, files, summary, error)) {
        return Fail(err, error);
    }
    if (!options.quiet) {
        summary.Print(out, options.unit);
    }
    return 0;
}

} // namespace

int Run(std::span<const std::wstring> arguments, std::ostream& out, std::ostream& err) {
    // Whatever is thrown ends here as one line; the outputs not committed are gone by then.
    try {
        Options options;
        std::string error;
        if (!ParseOptions(arguments, options, error)) {
            return Fail(err, error, kUsageError);
        }
        if (options.help) {
            out << Usage();
            return 0;
        }
        if (options.version) {
            const auto library = LoadedOstrel();
            if (!library) {
                return Fail(err, "can't read the version resource of ostrel.dll");
            }
            out << "ostrel.dll " << library->version << " (" << library->file << ")\n";
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
