// The option table below is both the parser and the usage text.
#include "options.h"

#include <algorithm>
#include <functional>

#include <CLI/CLI.hpp>

#include "argument_text.h"
#include "display_name.h"
#include "names.h"

namespace convert {
namespace {

// Takes a value into the options; false when it refuses the value.
using Taker = std::function<bool(const std::string& value)>;

template <class Target, class Parse> Taker Into(Target& target, Parse parse) {
    return [&target, parse](const std::string& value) {
        const auto parsed = parse(value);
        if (parsed) {
            target = *parsed;
        }
        return parsed.has_value();
    };
}

// A refusal gives the value and what values must be (the help if none); the parser adds the name.
CLI::Option* Add(CLI::App& app, const std::string& name, const char* type, const std::string& help,
                 const std::string& mustBe, Taker take) {
    const auto check = [mustBe, take](const std::string& value) {
        if (!take(value)) {
            throw CLI::ValidationError('"' + formats::DisplayName(ArgumentPath(value)) +
                                       "\" is not " + mustBe);
        }
    };
    return app.add_option(name, help.empty() ? mustBe : help)->type_name(type)->each(check);
}

// Declares every option on app, each taking its value into options.
void Declare(CLI::App& app, Options& options) {
    // On Windows CLI11 would take /name for an option; here it is a path from the drive's root.
    app.allow_windows_style_options(false);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.option_defaults()->disable_flag_override();
    app.set_version_flag("--version", std::string(), "the version of the ostrel.dll loaded");
    app.add_flag("--quiet", options.quiet, "print nothing unless something fails");
    app.add_option("INPUT", "files, folders or wildcards such as frames\\*.pgm")
        ->required()
        ->expected(-1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->type_name("")
        ->each(
            [&options](const std::string& text) { options.inputs.push_back(ArgumentPath(text)); });

    const auto path = [](const std::string& text) { return std::optional(ArgumentPath(text)); };
    app.option_defaults()->group("Frames (binary PGM of 8 or 16 bits unless --type is given)");
    const char* sides = "a whole number from 1 to 65535";
    Add(app, "--type", "T", "headerless little-endian frames of element type T",
        "an element type (Int8, UInt8, Int16, UInt16, Int32, UInt32, Int64, UInt64, Float, Double)",
        Into(options.type, formats::ParseElementType))
        ->needs(Add(app, "--width", "W", "", sides, Into(options.width, ParseSide)))
        ->needs(Add(app, "--height", "H", "", sides, Into(options.height, ParseSide)));

    app.option_defaults()->group("Presets (one of)");
    const auto preset =
        Add(app, "--preset", "P", "", "a preset from 0 to 3", Into(options.preset, ParsePreset));
    const auto map = Add(app, "--preset-map", "FILE", "8-bit PGM of each pixel's preset", "",
                         Into(options.presetMap, path));
    const auto keys = Add(app, "--keys", "FILE", "PGM of pixel keys", "", Into(options.keys, path));
    const auto table = Add(app, "--key-table", "FILE", "lines of \"key preset\"", "",
                           Into(options.keyTable, path));
    keys->needs(table)->excludes(map)->excludes(preset);
    table->needs(keys);
    map->excludes(preset);

    app.option_defaults()->group("Calibration (the sample records unless given)");
    Add(app, "--factory-cal", "P=FILE", "factory record of preset P",
        "P=FILE with a preset from 0 to 3",
        [&options](const std::string& value) {
            const auto given = ParsePresetFile(value);
            if (given) {
                options.factoryCal[given->preset] = ArgumentPath(given->file);
            }
            return given.has_value();
        })
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    Add(app, "--object-params", "FILE", "object parameters", "", Into(options.objectParams, path));
    const char* ratios = "a number above 0 and at most 1";
    Add(app, "--emissivity", "E", "", ratios, Into(options.emissivity, ParseRatio));
    Add(app, "--transmission", "T", "", ratios, Into(options.transmission, ParseRatio));
    const char* temperatures = "a temperature in Celsius above absolute zero";
    Add(app, "--reflected", "C", "", temperatures, Into(options.reflectedC, ParseCelsius));
    Add(app, "--atmosphere", "C", "", temperatures, Into(options.atmosphereC, ParseCelsius));
    const char* units = "a unit (C, F, K, R, Celsius, Fahrenheit, Kelvin, Rankine)";
    Add(app, "--lut-unit", "U", "", units, Into(options.lutUnit, formats::ParseUnit));
    Add(app, "--unit", "U", "unit of the results", units, Into(options.unit, formats::ParseUnit));

    app.option_defaults()->group("Output, beside each input (--png unless one is chosen)");
    Add(app, "--out", "DIR", "folder of the results instead", "", Into(options.outFolder, path));
    app.add_flag("--pfm", options.pfm, "temperatures as PFM");
    app.add_flag("--csv", options.csv, "temperatures as CSV");
    app.add_flag("--status", options.status, "status bytes as 8-bit PGM");
    app.add_flag("--png", options.png, "false-colour image with a scale bar");
    Add(app, "--range", "MIN:MAX", "colour scale (default the valid pixels' span)",
        "MIN:MAX with MIN below MAX", Into(options.range, ParseRange));
    Add(app, "--jobs", "N", "frames converted at once (default the number of cores)",
        "a whole number from 1 to " + std::to_string(kMostJobs), Into(options.jobs, ParseJobs));
}

} // namespace

bool ParseOptions(std::span<const std::wstring> arguments, Options& options, std::string& error) {
    options = Options{};
    CLI::App app;
    Declare(app, options);
    // The parser takes the arguments last first.
    std::vector<std::string> reversed(arguments.size());
    std::transform(arguments.rbegin(), arguments.rend(), reversed.begin(), ArgumentText);
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        options.help = true;
    } catch (const CLI::CallForVersion&) {
        options.version = true;
    } catch (const CLI::ParseError& failure) {
        error = std::string(failure.what()) + " (see --help)";
        return false;
    }
    options.dispatch = !options.presetMap.empty() ? Dispatch::PresetMap
                       : !options.keys.empty()    ? Dispatch::Keyed
                                                  : Dispatch::Uniform;
    options.png = options.png || !(options.pfm || options.csv || options.status);
    return true;
}

std::string Usage() {
    CLI::App app("Converts frames of raw detector counts into temperatures through the camera "
                 "server's calibration.",
                 "ostrel-convert");
    app.footer("Exit codes: 0 when every frame was converted, 1 when an input or a conversion "
               "failed, 2 for a command line that can't be used.");
    Options options;
    Declare(app, options);
    return app.help();
}

} // namespace convert
