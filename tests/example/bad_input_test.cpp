// ostrel-convert.exe on bad input, a failing server and a server that refuses: one line on
// stderr naming the file or option, a failure exit code, and no output file.
#include <ostrel.h>

#include <functional>

#include "convert_fixture.h"

namespace {

using testfiles::FolderContents;
using testfiles::WriteBytes;
using testfiles::WritePgm;

struct BadRun {
    const char* label;
    std::function<void(const std::filesystem::path& work)> prepare;
    std::vector<std::wstring> arguments;
    std::string named;
};

void PrintTo(const BadRun& run, std::ostream* out) {
    *out << run.label;
}

void FramePgm(const std::filesystem::path& work) {
    WritePgm(work / L"f.pgm", 4, 4, std::vector<std::uint16_t>(16, 30000), 65535);
}

class BadInput : public ConvertProgram, public testing::WithParamInterface<BadRun> {};

TEST_P(BadInput, FailsWithOneLineAndNoOutput) {
    GetParam().prepare(work_.Path());
    const auto before = FolderContents(work_.Path());
    std::vector<std::wstring> arguments = GetParam().arguments;
    arguments.insert(arguments.end(),
                     {L"--out", L"out", L"--pfm", L"--csv", L"--status", L"--png"});

    ExpectOneLineFailure(Convert(arguments), GetParam().named);

    EXPECT_EQ(FolderContents(work_ / L"out"), std::vector<std::wstring>{});
    auto after = FolderContents(work_.Path());
    std::erase(after, L"out");
    EXPECT_EQ(after, before);
}

const BadRun kBadRuns[] = {
    {"MissingFile", [](auto&) {}, {L"absent.pgm"}, "absent.pgm"},
    {"TruncatedPgm",
     [](const std::filesystem::path& work) {
         WriteBytes(work / L"short.pgm", "P5\n4 4\n65535\n0123456789");
     },
     {L"short.pgm"},
     "short.pgm"},
    {"TruncatedRaw",
     [](const std::filesystem::path& work) { WriteBytes(work / L"f.raw", std::string(30, 'a')); },
     {L"f.raw", L"--type", L"UInt16", L"--width", L"4", L"--height", L"4"},
     "f.raw"},
    {"PgmOfAnotherSize", FramePgm, {L"f.pgm", L"--width", L"5", L"--height", L"4"}, "f.pgm"},
    {"UnknownType", FramePgm, {L"f.pgm", L"--type", L"UInt12", L"--width", L"4"}, "--type"},
    {"UnknownUnit", FramePgm, {L"f.pgm", L"--unit", L"Kelvinn"}, "--unit"},
    {"UnknownLutUnit", FramePgm, {L"f.pgm", L"--lut-unit", L"X"}, "--lut-unit"},
    {"PresetAboveThree", FramePgm, {L"f.pgm", L"--preset", L"7"}, "--preset"},
    {"BadRange", FramePgm, {L"f.pgm", L"--range", L"hot:cold"}, "--range"},
    {"UnknownOption", FramePgm, {L"f.pgm", L"--frobnicate"}, "--frobnicate"},
    {"MissingFactoryRecord", FramePgm, {L"f.pgm", L"--factory-cal", L"0=nocal.txt"}, "nocal.txt"},
    {"MapOfAnotherSize",
     [](const std::filesystem::path& work) {
         FramePgm(work);
         WritePgm(work / L"map.pgm", 2, 2, {0, 1, 2, 3}, 255);
     },
     {L"f.pgm", L"--preset-map", L"map.pgm"},
     "map.pgm"},
    {"KeyMissingFromTable",
     [](const std::filesystem::path& work) {
         FramePgm(work);
         WritePgm(work / L"keys.pgm", 4, 4, std::vector<std::uint16_t>(16, 9), 255);
         WriteBytes(work / L"table.txt", "1 0\n");
     },
     {L"f.pgm", L"--keys", L"keys.pgm", L"--key-table", L"table.txt"},
     "keys.pgm"},
    {"FolderWithoutFrames",
     [](const std::filesystem::path& work) { std::filesystem::create_directory(work / L"empty"); },
     {L"empty"},
     "empty"},
    // Valid on the command line, but below the model's 150 K: the server refuses it.
    {"ReflectedTemperatureTheServerRefuses",
     FramePgm,
     {L"f.pgm", L"--reflected", L"-200"},
     "object_params.txt"},
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
        if (control_) {
            control_->SimSetFault(GetParam().slot, 0);
        }
    }
    COstrelCal control_;
};

TEST_P(FailingServer, FailsWithOneLineAndNoOutput) {
    const auto frame = CopyScene(L"scene.pgm");
    ASSERT_TRUE(control_.Get()) << "is the simulator registered?";
    ASSERT_EQ(control_->SimSetFault(GetParam().slot, GetParam().mode), S_OK);

    ExpectOneLineFailure(Convert({L"scene.pgm", L"--pfm", L"--png"}), GetParam().named);

    EXPECT_EQ(FolderContents(work_.Path()), std::vector<std::wstring>{L"scene.pgm"});
}

INSTANTIATE_TEST_SUITE_P(, FailingServer,
                         testing::Values(ServerFault{"TableBuild", 9, 1, "scene.pgm"},
                                         ServerFault{"TableBuildNotOk", 9, 2, "scene.pgm"},
                                         ServerFault{"FactoryLoad", 17, 2, "factory_cal.txt"},
                                         ServerFault{"ObjectParams", 10, 1, "object_params.txt"},
                                         ServerFault{"Readiness", 14, 1, "calibration service"}),
                         [](const auto& info) { return std::string(info.param.label); });

} // namespace
