#include "options.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <map>

#include "display_name.h"
#include "names.h"

namespace convert {
namespace {

template <class Number> std::optional<Number> ParseNumber(std::string_view text) {
    Number value{};
    const auto end = text.data() + text.size();
    const auto [rest, status] = std::from_chars(text.data(), end, value);
    if (text.empty() || status != std::errc() || rest != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<unsigned char> ParsePreset(std::string_view text) {
    const auto preset = ParseNumber<unsigned>(text);
    if (!preset || *preset >= vz::kPresetCount) {
        return std::nullopt;
    }
    return static_cast<unsigned char>(*preset);
}

constexpr unsigned kMostJobs = 256;

class Parser {
public:
    explicit Parser(Options& options) : mOptions(options) {}
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    bool Parse(std::span<const std::wstring> arguments, std::string& error) {
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const std::wstring& argument = arguments[i];
            if (!argument.starts_with(L"-") || argument == L"-") {
                mOptions.inputs.emplace_back(argument);
                continue;
            }
            const auto equals = argument.find(L'=');
            const std::string name = formats::Narrow(argument.substr(0, equals));
            if (const auto flag = mFlags.find(name); flag != mFlags.end()) {
                if (equals != std::wstring::npos) {
                    error = name + " takes no value";
                    return false;
                }
                *flag->second = true;
                continue;
            }
            const auto option = mValued.find(name);
            if (option == mValued.end()) {
                error = "unknown option " + name + " (see --help)";
                return false;
            }
            std::wstring value;
            if (equals != std::wstring::npos) {
                value = argument.substr(equals + 1);
            } else if (i + 1 < arguments.size()) {
                value = arguments[++i];
            } else {
                error = name + " needs a value";
                return false;
            }
            if (!option->second(value)) {
                error = name + ": \"" + formats::Narrow(value) + "\" " + mProblem;
                return false;
            }
        }
        return mOptions.help || Finish(error);
    }

private:
    using Handler = std::function<bool(const std::wstring&)>;

    // For the value handlers: what is wrong with the value.
    bool Refuse(const char* problem) {
        mProblem = problem;
        return false;
    }

    bool Side(const std::wstring& value, std::optional<std::uint32_t>& side) {
        side = formats::ParseSide(value);
        if (!side) {
            return Refuse("is not a whole number from 1 to 65535");
        }
        return true;
    }

    bool Ratio(const std::wstring& value, std::optional<float>& ratio) {
        const auto number = ParseNumber<float>(formats::Narrow(value));
        if (!number || !(*number > 0.0f && *number <= 1.0f)) {
            return Refuse("is not a number above 0 and at most 1");
        }
        ratio = *number;
        return true;
    }

    bool Celsius(const std::wstring& value, std::optional<float>& celsius) {
        const auto number = ParseNumber<float>(formats::Narrow(value));
        if (!number || !std::isfinite(*number) || !(*number > -273.15f)) {
            return Refuse("is not a temperature in Celsius above absolute zero");
        }
        celsius = *number;
        return true;
    }

    bool Jobs(const std::wstring& value) {
        const auto jobs = ParseNumber<unsigned>(formats::Narrow(value));
        if (!jobs || *jobs == 0 || *jobs > kMostJobs) {
            return Refuse(("is not a whole number from 1 to " + std::to_string(kMostJobs)).c_str());
        }
        mOptions.jobs = *jobs;
        return true;
    }

    bool Unit(const std::wstring& value, vz::ETempType& unit) {
        const auto parsed = formats::ParseUnit(formats::Narrow(value));
        if (!parsed) {
            return Refuse("is not a unit (C, F, K, R, Celsius, Fahrenheit, Kelvin, Rankine)");
        }
        unit = *parsed;
        return true;
    }

    bool Type(const std::wstring& value) {
        mType = formats::ParseElementType(formats::Narrow(value));
        if (!mType) {
            return Refuse("is not an element type (Int8, UInt8, Int16, UInt16, Int32, UInt32, "
                          "Int64, UInt64, Float, Double)");
        }
        return true;
    }

    bool Preset(const std::wstring& value) {
        const auto preset = ParsePreset(formats::Narrow(value));
        if (!preset) {
            return Refuse("is not a preset from 0 to 3");
        }
        mOptions.preset = *preset;
        mPresetGiven = true;
        return true;
    }

    bool FactoryCal(const std::wstring& value) {
        const auto equals = value.find(L'=');
        const auto preset = equals == std::wstring::npos
                                ? std::nullopt
                                : ParsePreset(formats::Narrow(value.substr(0, equals)));
        if (!preset || equals + 1 == value.size()) {
            return Refuse("is not P=FILE with a preset P from 0 to 3");
        }
        mOptions.factoryCal[*preset] = value.substr(equals + 1);
        return true;
    }

    bool Range(const std::wstring& value) {
        const std::string text = formats::Narrow(value);
        // MIN may be negative: the first colon after its first character ends it.
        const auto colon = text.find(':', 1);
        if (colon == std::string::npos) {
            return Refuse("is not MIN:MAX");
        }
        const auto low = ParseNumber<float>(text.substr(0, colon));
        const auto high = ParseNumber<float>(text.substr(colon + 1));
        if (!low || !high || !std::isfinite(*low) || !std::isfinite(*high) || !(*low < *high)) {
            return Refuse("is not MIN:MAX with MIN below MAX");
        }
        mOptions.range = TemperatureRange{*low, *high};
        return true;
    }

    static bool Path(const std::wstring& value, std::filesystem::path& path) {
        path = value;
        return true;
    }

    // Checks how the options combine and derives what they imply.
    bool Finish(std::string& error) {
        const int dispatchOptions =
            int(mPresetGiven) + int(!mOptions.presetMap.empty()) + int(!mOptions.keys.empty());
        if (mOptions.inputs.empty()) {
            error = "no input given (see --help)";
        } else if (dispatchOptions > 1) {
            error = "--preset, --preset-map and --keys exclude each other";
        } else if (mOptions.keys.empty() != mOptions.keyTable.empty()) {
            error = mOptions.keys.empty() ? "--key-table needs --keys" : "--keys needs --key-table";
        } else if (mType && (!mOptions.width || !mOptions.height)) {
            error = "--type needs --width and --height";
        } else {
            if (mType) {
                mOptions.raw = formats::RawLayout{*mOptions.width, *mOptions.height, *mType};
            }
            mOptions.dispatch = !mOptions.presetMap.empty() ? Dispatch::PresetMap
                                : !mOptions.keys.empty()    ? Dispatch::Keyed
                                                            : Dispatch::Uniform;
            mOptions.png = mOptions.png || !(mOptions.pfm || mOptions.csv || mOptions.status);
            return true;
        }
        return false;
    }

    Options& mOptions;
    std::string mProblem;
    bool mPresetGiven = false;
    std::optional<vz::EDataType> mType;

    const std::map<std::string, bool*> mFlags{
        {"--help", &mOptions.help}, {"-h", &mOptions.help},         {"--pfm", &mOptions.pfm},
        {"--csv", &mOptions.csv},   {"--status", &mOptions.status}, {"--png", &mOptions.png}};
    const std::map<std::string, Handler> mValued{
        {"--width", [this](const std::wstring& v) { return Side(v, mOptions.width); }},
        {"--height", [this](const std::wstring& v) { return Side(v, mOptions.height); }},
        {"--type", [this](const std::wstring& v) { return Type(v); }},
        {"--preset", [this](const std::wstring& v) { return Preset(v); }},
        {"--preset-map", [this](const std::wstring& v) { return Path(v, mOptions.presetMap); }},
        {"--keys", [this](const std::wstring& v) { return Path(v, mOptions.keys); }},
        {"--key-table", [this](const std::wstring& v) { return Path(v, mOptions.keyTable); }},
        {"--factory-cal", [this](const std::wstring& v) { return FactoryCal(v); }},
        {"--object-params",
         [this](const std::wstring& v) { return Path(v, mOptions.objectParams.emplace()); }},
        {"--emissivity", [this](const std::wstring& v) { return Ratio(v, mOptions.emissivity); }},
        {"--transmission",
         [this](const std::wstring& v) { return Ratio(v, mOptions.transmission); }},
        {"--reflected", [this](const std::wstring& v) { return Celsius(v, mOptions.reflectedC); }},
        {"--atmosphere",
         [this](const std::wstring& v) { return Celsius(v, mOptions.atmosphereC); }},
        {"--lut-unit", [this](const std::wstring& v) { return Unit(v, mOptions.lutUnit); }},
        {"--unit", [this](const std::wstring& v) { return Unit(v, mOptions.unit); }},
        {"--out", [this](const std::wstring& v) { return Path(v, mOptions.outFolder.emplace()); }},
        {"--range", [this](const std::wstring& v) { return Range(v); }},
        {"--jobs", [this](const std::wstring& v) { return Jobs(v); }},
    };
};

} // namespace

bool ParseOptions(std::span<const std::wstring> arguments, Options& options, std::string& error) {
    options = Options{};
    return Parser(options).Parse(arguments, error);
}

const char* Usage() {
    return R"(usage: ostrel-convert [options] INPUT...

Converts frames of raw detector counts into temperatures through the camera server's
calibration. INPUT is a file, a folder (all its .pgm files, or .raw files with --type) or a
wildcard such as frames\*.pgm.

Frames:
  --type T             headerless raw frames of element type T (Int8, UInt8, Int16, UInt16,
                       Int32, UInt32, Int64, UInt64, Float, Double; little-endian); needs:
  --width W --height H the frame size (without --type: the size every PGM frame must have)
                       Without --type, frames are binary PGM images (8 or 16 bits).

Presets (one of):
  --preset P           every pixel through preset P, 0..3 (default 0)
  --preset-map FILE    8-bit PGM of the frame's size giving each pixel's preset
  --keys FILE          8- or 16-bit PGM of pixel keys, with
  --key-table FILE     lines of "key preset" ("#" starts a comment)

Calibration:
  --factory-cal P=FILE factory record of preset P (repeatable; default the sample record)
  --object-params FILE object parameters (default the sample), overridden by:
  --emissivity E  --transmission T  (0 < value <= 1)
  --reflected C  --atmosphere C     (temperatures in Celsius)
  --lut-unit U         unit of the engine's tables (C, F, K, R or their names; default C)
  --unit U             unit of the results (default C)

Output, named after each input (with none chosen, --png):
  --out DIR            folder for the results (default: the input's folder)
  --pfm                temperatures as PFM            NAME.pfm
  --csv                temperatures as CSV            NAME.csv
  --status             status bytes as 8-bit PGM      NAME.status.pgm
  --png                false-colour image with bar    NAME.png
  --range MIN:MAX      colour scale in the result unit (default the valid pixels' span)

  --jobs N             frames converted at once (default: the number of cores)
  --help               this text
)";
}

} // namespace convert
