// ostrel-convert.exe against the simulator: temperatures of a synthetic scene against its
// truth, the three dispatchers, raw frames of every kind, the picture and batches.
#include <windows.h>

#include <cstring>

#include <unique_resource.h>

#include "convert_fixture.h"

namespace {

using testfiles::FolderContents;
using testfiles::ReadBytes;

struct Units {
    const wchar_t* lutUnit;
    const wchar_t* unit;
    double scale; // result units per kelvin
    double (*fromCelsius)(double);
};

std::string Ascii(std::wstring_view text) {
    return std::string(text.begin(), text.end());
}

void PrintTo(const Units& units, std::ostream* out) {
    *out << "table in " << Ascii(units.lutUnit) << ", results in " << Ascii(units.unit);
}

class SceneTemperatures : public ConvertProgram, public testing::WithParamInterface<Units> {};

// The scene's counts are the nearest ones to its temperatures, so only the table's resolution
// (a few thousandths of a degree) separates the results from the truth.
TEST_P(SceneTemperatures, MatchTheTruthAtEveryPixel) {
    CopyScene(L"scene.pgm");
    const auto result = Convert({L"scene.pgm", L"--pfm", L"--status", L"--lut-unit",
                                 GetParam().lutUnit, L"--unit", GetParam().unit});
    ASSERT_EQ(result.exitCode, 0u) << result.err;
    EXPECT_NE(result.out.find("Converted 1 frame"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("over status-0 pixels"), std::string::npos) << result.out;

    std::uint32_t width = 0, height = 0;
    const auto truth = testfiles::ReadPfm(SceneTruth(), width, height);
    const auto converted = testfiles::ReadPfm(mWork / L"scene.pfm", width, height);
    ASSERT_EQ(width, kSceneWidth);
    ASSERT_EQ(height, kSceneHeight);
    ASSERT_EQ(truth.size(), converted.size());
    EXPECT_TRUE(ReadBytes(mWork / L"scene.status.pgm") ==
                "P5\n64 48\n4\n" + std::string(converted.size(), '\0'))
        << "the scene lies inside the calibrated range: every status is 0";
    for (std::size_t i = 0; i < converted.size(); ++i) {
        const double expected = GetParam().fromCelsius(truth[i]);
        ASSERT_NEAR(converted[i], expected, 0.5 * GetParam().scale) << "pixel " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(, SceneTemperatures,
                         testing::Values(Units{L"C", L"C", 1.0, [](double c) { return c; }},
                                         Units{L"F", L"Rankine", 1.8,
                                               [](double c) { return (c + 273.15) * 1.8; }}));

// A small frame's counts as raw little-endian elements of type T.
const std::vector<std::uint16_t> kCounts{9000, 12000, 15000, 18000, 21000, 24000};

template <class T> std::string RawCounts() {
    std::string bytes(kCounts.size() * sizeof(T), '\0');
    for (std::size_t i = 0; i < kCounts.size(); ++i) {
        const T value = static_cast<T>(kCounts[i]);
        std::memcpy(bytes.data() + i * sizeof(T), &value, sizeof(T));
    }
    return bytes;
}

// Element types named in either case.
TEST_F(ConvertProgram, RawFramesConvertLikeThePgmOfTheSameCounts) {
    testfiles::WritePgm(mWork / L"f.pgm", 3, 2, kCounts, 65535);
    const auto fromPgm = Convert({L"f.pgm", L"--pfm", L"--out", L"pgm"});
    ASSERT_EQ(fromPgm.exitCode, 0u) << fromPgm.err;
    const std::string expected = ReadBytes(mWork / L"pgm" / L"f.pfm");
    ASSERT_FALSE(expected.empty());
    for (const auto& [type, bytes] : {std::pair{L"int32", RawCounts<std::int32_t>()},
                                      std::pair{L"DOUBLE", RawCounts<double>()}}) {
        testfiles::WriteBytes(mWork / L"f.raw", bytes);
        const auto fromRaw = Convert({L"f.raw", L"--pfm", L"--out", type, L"--type", type,
                                      L"--width", L"3", L"--height", L"2"});
        ASSERT_EQ(fromRaw.exitCode, 0u) << fromRaw.err;
        EXPECT_TRUE(ReadBytes(mWork / type / L"f.pfm") == expected) << Ascii(type);
    }
}

// Every preset holds the sample record, so however pixels pick their presets the results agree.
TEST_F(ConvertProgram, DispatchersGiveIdenticalTemperatures) {
    CopyScene(L"scene.pgm");
    std::vector<std::uint16_t> presets, keys;
    for (std::uint32_t y = 0; y < kSceneHeight; ++y) {
        for (std::uint32_t x = 0; x < kSceneWidth; ++x) {
            presets.push_back(static_cast<std::uint16_t>((x / 8 + y / 8) % 4));
            keys.push_back(static_cast<std::uint16_t>(1000 + (x * 7 + y) % 5));
        }
    }
    testfiles::WritePgm(mWork / L"map.pgm", kSceneWidth, kSceneHeight, presets, 255);
    testfiles::WritePgm(mWork / L"keys.pgm", kSceneWidth, kSceneHeight, keys, 65535);
    testfiles::WriteBytes(mWork / L"table.txt", "1000 0\n1001 1\n1002 2\n1003 3\n1004 1\n");

    const std::vector<std::vector<std::wstring>> runs{
        {L"scene.pgm", L"--pfm", L"--preset", L"2", L"--out", L"uniform"},
        {L"scene.pgm", L"--pfm", L"--preset-map", L"map.pgm", L"--out", L"map"},
        {L"scene.pgm", L"--pfm", L"--keys", L"keys.pgm", L"--key-table", L"table.txt", L"--out",
         L"keyed"}};
    for (const auto& run : runs) {
        const auto result = Convert(run);
        ASSERT_EQ(result.exitCode, 0u) << result.err;
    }
    const std::string uniform = ReadBytes(mWork / L"uniform" / L"scene.pfm");
    ASSERT_FALSE(uniform.empty());
    EXPECT_TRUE(ReadBytes(mWork / L"map" / L"scene.pfm") == uniform);
    EXPECT_TRUE(ReadBytes(mWork / L"keyed" / L"scene.pfm") == uniform);
}

// Only the frame is read, however long the file behind its header.
TEST_F(ConvertProgram, ReadsOnlyTheFrameOfALongerFile) {
    const auto frame = CopyScene(L"scene.pgm");
    {
        const owners::UniqueFile file(CreateFileW(frame.c_str(), GENERIC_WRITE, 0, nullptr,
                                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        ASSERT_TRUE(file);
        ASSERT_TRUE(SetFilePointerEx(file.get(), {.QuadPart = 64ll << 30}, nullptr, FILE_BEGIN));
        ASSERT_TRUE(SetEndOfFile(file.get())) << "a sparse file of 64 GiB";
    }
    const auto result = Convert({L"scene.pgm", L"--pfm"});
    EXPECT_EQ(result.exitCode, 0u) << result.err;
}

// A frame's outputs appear together or not at all.
TEST_F(ConvertProgram, AnOutputThatCantBeWrittenLeavesNoneOfTheOthers) {
    CopyScene(L"scene.pgm");
    std::filesystem::create_directory(mWork / L"scene.csv");
    testfiles::ExpectOneLineFailure(Convert({L"scene.pgm", L"--pfm", L"--csv"}), "scene.csv");
    EXPECT_EQ(FolderContents(mWork.Path()),
              (std::vector<std::wstring>{L"scene.csv", L"scene.pgm"}));
}

// As a process of its own: the executable's exit code and its files on disk. A picture holds
// the frame with the colour bar beside it, and is tall enough for the bar's labels.
TEST_F(ConvertProgram, PictureHoldsTheFrameAndTheColourBar) {
    CopyScene(L"scene.pgm");
    testfiles::WritePgm(mWork / L"tiny.pgm", 4, 3, std::vector<std::uint16_t>(12, 20000), 65535);
    const auto result = ConvertProcess({L"scene.pgm", L"tiny.pgm", L"--range", L"20:40"});
    ASSERT_EQ(result.exitCode, 0u) << result.err;
    EXPECT_NE(result.out.find("Converted 2 frames"), std::string::npos) << result.out;

    const auto scene = testfiles::ReadPngSize(mWork / L"scene.png");
    EXPECT_GT(scene.width, kSceneWidth + 20);
    EXPECT_EQ(scene.height, kSceneHeight);
    const auto tiny = testfiles::ReadPngSize(mWork / L"tiny.png");
    EXPECT_GT(tiny.width, 4 + 20);
    EXPECT_GE(tiny.height, 30);
}

// --quiet: the same files and exit code, nothing on either stream.
TEST_F(ConvertProgram, QuietConvertsAndSaysNothing) {
    CopyScene(L"scene.pgm");
    const auto result = ConvertProcess({L"scene.pgm", L"--pfm", L"--quiet"});
    EXPECT_EQ(result.exitCode, 0u) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(FolderContents(mWork.Path()),
              (std::vector<std::wstring>{L"scene.pfm", L"scene.pgm"}));
}

// However many frames convert at once, a batch ends as one thread leaves it: the same files and
// the same summary but for the time per frame; the first bad frame in input order stops it with
// its line, and no frame after it leaves an output. A folder and a wildcard give the same frames
// in order, never a status image of an earlier run; outputs go beside their frames by default.
TEST_F(ConvertProgram, BatchesEndAlikeWhateverTheJobs) {
    std::filesystem::create_directory(mWork / L"frames");
    for (const wchar_t* name : {L"frames\\e.pgm", L"frames\\b.pgm", L"frames\\c.pgm",
                                L"frames\\d.pgm", L"frames\\a.pgm"}) {
        CopyScene(name);
    }
    testfiles::WriteBytes(mWork / L"frames" / L"a.status.pgm", "from an earlier run");
    const auto summary = [](const std::string& out) { return out.substr(out.find(" ms per")); };
    const auto one = Convert({L"frames", L"--pfm", L"--jobs", L"1"});
    const auto three = Convert({L"frames\\*.pgm", L"--pfm", L"--jobs", L"3", L"--out", L"three"});
    ASSERT_EQ(one.exitCode, 0u) << one.err;
    ASSERT_EQ(three.exitCode, 0u) << three.err;
    EXPECT_EQ(summary(three.out), summary(one.out));
    const auto names = FolderContents(mWork / L"three");
    ASSERT_EQ(names, (std::vector<std::wstring>{L"a.pfm", L"b.pfm", L"c.pfm", L"d.pfm", L"e.pfm"}));
    for (const std::wstring& name : names) {
        EXPECT_TRUE(ReadBytes(mWork / L"three" / name) == ReadBytes(mWork / L"frames" / name));
    }

    testfiles::WriteBytes(mWork / L"frames" / L"c.pgm", "P5\n64 48\n65535\ntoo short");
    testfiles::ExpectOneLineFailure(
        Convert({L"frames", L"--pfm", L"--jobs", L"3", L"--out", L"stopped"}), "c.pgm");
    EXPECT_EQ(FolderContents(mWork / L"stopped"), (std::vector<std::wstring>{L"a.pfm", L"b.pfm"}));
}

} // namespace
