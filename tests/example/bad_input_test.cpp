// The converter on bad input and, as a process of its own, on a failing server: one line on
// stderr naming the file or option, exit code 1 (2 for a command line that can't be used), and no
// output file.
#include <ostrel.h>
#include <server_slots.h>

#include "convert_fixture.h"
#include "simulator_control.h"

namespace {

using testfiles::ExpectOneLineFailure;
using testfiles::FolderContents;
using testfiles::WriteBytes;
using testfiles::WritePgm;

// A 4x4 frame's worth of 8-bit samples after a PGM header, `marked` at pixel 1,0, 1 elsewhere.
std::string Pgm8(char marked) {
    std::string samples(16, '\1');
    samples[1] = marked;
    return "P5\n4 4\n255\n" + samples;
}

// Each run has the frame f.pgm and the given files (a name without bytes is an empty folder).
struct BadRun {
    const char* label;
    std::vector<std::pair<const wchar_t*, std::string>> files;
    std::vector<std::wstring> arguments;
    std::string named; // what the message must name
    int exitCode = 1;  // 2 for a command line that can't be used
};
void PrintTo(const BadRun& run, std::ostream* out) {
    *out << run.label;
}

class BadInput : public ConvertProgram, public testing::WithParamInterface<BadRun> {};

TEST_P(BadInput, FailsWithOneLineAndNoOutput) {
    WritePgm(mWork / L"f.pgm", 4, 4, std::vector<std::uint16_t>(16, 30000), 65535);
    for (const auto& [name, bytes] : GetParam().files) {
        if (bytes.empty()) {
            std::filesystem::create_directory(mWork / name);
        } else {
            WriteBytes(mWork / name, bytes);
        }
    }
    const auto before = FolderContents(mWork.Path());
    std::vector<std::wstring> arguments = GetParam().arguments;
    arguments.insert(arguments.end(),
                     {L"--out", L"out", L"--pfm", L"--csv", L"--status", L"--png"});

    const testfiles::ProgramResult result = Convert(arguments);
    ExpectOneLineFailure(result, GetParam().named);
    EXPECT_EQ(result.exitCode, static_cast<DWORD>(GetParam().exitCode));

    EXPECT_EQ(FolderContents(mWork / L"out"), std::vector<std::wstring>{});
    auto after = FolderContents(mWork.Path());
    std::erase(after, L"out");
    EXPECT_EQ(after, before);
}

BadRun Mapped(const char* label, std::string map, std::string named) {
    return {label,
            {{L"map.pgm", std::move(map)}},
            {L"f.pgm", L"--preset-map", L"map.pgm"},
            std::move(named)};
}
// Key 2 at pixel 1,0 and key 1 elsewhere, unless another key image is given.
BadRun Keyed(const char* label, std::string table, std::string named,
             std::string keys = Pgm8('\2')) {
    return {label,
            {{L"keys.pgm", std::move(keys)}, {L"table.txt", std::move(table)}},
            {L"f.pgm", L"--keys", L"keys.pgm", L"--key-table", L"table.txt"},
            std::move(named)};
}

const std::string kHugePgm = "P5\n2147549185 4294836226\n255\n0123";
const BadRun kBadRuns[] = {
    // Frames.
    {"MissingFile", {}, {L"absent.pgm"}, "absent.pgm"},
    {"TruncatedPgm", {{L"short.pgm", "P5\n4 4\n65535\n0123456789"}}, {L"short.pgm"}, "short.pgm"},
    {"NotABinaryPgm", {{L"a.pgm", "P2\n2 2\n255\n1 2 3 4"}}, {L"a.pgm"}, "a.pgm: not a binary"},
    {"MaxvalAbove65535", {{L"a.pgm", "P5\n2 2\n70000\nabcd"}}, {L"a.pgm"}, "maxval 70000"},
    {"MalformedHeader", {{L"a.pgm", "P5\n2\n"}}, {L"a.pgm"}, "a.pgm: malformed PGM header"},
    // Sides whose product overflows, as a frame and as a key image, and sides each within
    // the limit whose product is not.
    {"HugePgmHeader", {{L"a.pgm", kHugePgm}}, {L"a.pgm"}, "a.pgm: PGM size 2147549185x4294836226"},
    Keyed("HugeKeyImage", "1 0\n", "keys.pgm: PGM size", kHugePgm),
    {"TooManyPixels",
     {{L"a.pgm", "P5\n65535 65535\n255\n0123"}},
     {L"a.pgm"},
     "a.pgm: PGM size 65535x65535"},
    // A name no code page holds: a lone surrogate shows as U+FFFD.
    {"UnencodableName", {}, {L"f.pgm", L"--object-params", L"p\xD800.txt"}, "p\xEF\xBF\xBD.txt"},
    {"PgmOfAnotherSize", {}, {L"f.pgm", L"--width", L"5", L"--height", L"4"}, "f.pgm"},
    {"ShortRaw",
     {{L"f.raw", std::string(47, '\1')}},
     {L"f.raw", L"--type", L"Int32", L"--width", L"4", L"--height", L"3"},
     "f.raw: truncated"},
    {"LongRaw",
     {{L"f.raw", std::string(49, '\1')}},
     {L"f.raw", L"--type", L"Int32", L"--width", L"4", L"--height", L"3"},
     "f.raw: 49 bytes"},
    {"FolderWithoutFrames", {{L"empty", ""}}, {L"empty"}, "empty"},
    // Options.
    {"UnknownType", {}, {L"f.pgm", L"--type", L"UInt12", L"--width", L"4"}, "--type", 2},
    {"UnknownUnit", {}, {L"f.pgm", L"--unit", L"Kelvinn"}, "--unit: \"Kelvinn\" is not a unit", 2},
    {"PresetAboveThree", {}, {L"f.pgm", L"--preset", L"7"}, "--preset", 2},
    {"FactoryCalOfPresetFour", {}, {L"f.pgm", L"--factory-cal", L"4=cal.txt"}, "--factory-cal", 2},
    {"EmissivityAboveOne", {}, {L"f.pgm", L"--emissivity", L"1.5"}, "--emissivity", 2},
    {"ReflectedBelowAbsoluteZero", {}, {L"f.pgm", L"--reflected", L"-300"}, "--reflected", 2},
    {"ReversedRange", {}, {L"f.pgm", L"--range", L"40:10"}, "--range", 2},
    {"ZeroWidth", {}, {L"f.pgm", L"--width", L"0"}, "--width", 2},
    {"HeightNotANumber", {}, {L"f.pgm", L"--height", L"12x"}, "--height", 2},
    {"NoJobs", {}, {L"f.pgm", L"--jobs", L"0"}, "--jobs", 2},
    {"ValueForAFlag", {}, {L"f.pgm", L"--pfm=yes"}, "pfm was given a disallowed flag override", 2},
    {"TwoDispatchers",
     {},
     {L"f.pgm", L"--preset", L"1", L"--preset-map", L"m.pgm"},
     "--preset-map",
     2},
    {"KeysWithoutTable", {}, {L"f.pgm", L"--keys", L"k.pgm"}, "--key-table", 2},
    {"RawWithoutHeight", {}, {L"f.pgm", L"--type", L"UInt16", L"--width", L"4"}, "--height", 2},
    // Preset maps and pixel keys.
    Mapped("MapOfAnotherSize", "P5\n2 2\n255\n\1\2\3\1", "map.pgm"),
    Mapped("MapNamingPresetFour", Pgm8('\4'), "map.pgm: pixel 1,0 names preset 4"),
    Mapped("SixteenBitMap", "P5\n4 4\n65535\n" + std::string(32, '\0'), "map.pgm"),
    Keyed("KeyMissingFromTable", "1 0\n", "keys.pgm: key 2 at pixel 1,0 is not in"),
    Keyed("TableNamingPresetFour", "1 0\n2 4\n", "table.txt:2: preset 4"),
    Keyed("TableLineWithExtraWords", "1 0\n2 1 extra\n", "table.txt:2: expected"),
    Keyed("KeyGivenTwice", "1 0\n1 1\n2 1\n", "table.txt:2: key 1 is given twice"),
    Keyed("KeyAbove65535", "70000 1\n", "table.txt:1: key 70000"),
};

INSTANTIATE_TEST_SUITE_P(, BadInput, testing::ValuesIn(kBadRuns),
                         [](const auto& info) { return std::string(info.param.label); });

struct ServerFault {
    const char* label;
    ULONG slot;
    LONG mode;
    std::string named;
};
void PrintTo(const ServerFault& fault, std::ostream* out) {
    *out << fault.label;
}

class FailingServer : public ConvertProgram, public testing::WithParamInterface<ServerFault> {
protected:
    void TearDown() override {
        if (mControl) {
            mControl->SetFault(GetParam().slot, 0);
        }
    }
    // Declared in this order so that the control goes before the handle that gave it.
    COstrelCal mCalibration = GetOstrelCal();
    Microsoft::WRL::ComPtr<ICamSimControl> mControl = simulator::ControlOf(mCalibration);
};

TEST_P(FailingServer, FailsWithOneLineAndNoOutput) {
    CopyScene(L"scene.pgm");
    ASSERT_TRUE(mControl) << "is the simulator registered?";
    ASSERT_EQ(mControl->SetFault(GetParam().slot, GetParam().mode), S_OK);

    ExpectOneLineFailure(ConvertProcess({L"scene.pgm", L"--pfm", L"--png"}), GetParam().named);

    EXPECT_EQ(FolderContents(mWork.Path()), std::vector<std::wstring>{L"scene.pgm"});
}

INSTANTIATE_TEST_SUITE_P(
    , FailingServer,
    testing::Values(ServerFault{"TableBuild", kSlotComputeLut, 1, "scene.pgm"},
                    ServerFault{"FactoryLoad", kSlotLoadFactory, 2, "factory_cal.txt"},
                    ServerFault{"ObjectParams", kSlotSetObjectParams, 1, "object_params.txt"},
                    ServerFault{"Readiness", kSlotIsReady, 1, "calibration service"}),
    [](const auto& info) { return std::string(info.param.label); });

} // namespace
