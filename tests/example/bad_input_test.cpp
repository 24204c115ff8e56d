// ostrel-convert.exe on bad input, a failing server and a server that refuses: one line on
// stderr naming the file or option, a failure exit code, and no output file.
#include <ostrel.h>
#include <server_slots.h>

#include "convert_fixture.h"
#include "simulator_control.h"

namespace {

using testfiles::ExpectOneLineFailure;
using testfiles::FolderContents;
using testfiles::WriteBytes;
using testfiles::WritePgm;

// Each run has the frame f.pgm and, when `file` is set, that file with `bytes` (or, without
// bytes, an empty folder of that name).
struct BadRun {
    const char* label;
    const wchar_t* file;
    std::string bytes;
    std::vector<std::wstring> arguments;
    std::string named;
};

void PrintTo(const BadRun& run, std::ostream* out) {
    *out << run.label;
}

class BadInput : public ConvertProgram, public testing::WithParamInterface<BadRun> {};

TEST_P(BadInput, FailsWithOneLineAndNoOutput) {
    WritePgm(mWork / L"f.pgm", 4, 4, std::vector<std::uint16_t>(16, 30000), 65535);
    if (GetParam().file && GetParam().bytes.empty()) {
        std::filesystem::create_directory(mWork / GetParam().file);
    } else if (GetParam().file) {
        WriteBytes(mWork / GetParam().file, GetParam().bytes);
    }
    const auto before = FolderContents(mWork.Path());
    std::vector<std::wstring> arguments = GetParam().arguments;
    arguments.insert(arguments.end(),
                     {L"--out", L"out", L"--pfm", L"--csv", L"--status", L"--png"});

    ExpectOneLineFailure(Convert(arguments), GetParam().named);

    EXPECT_EQ(FolderContents(mWork / L"out"), std::vector<std::wstring>{});
    auto after = FolderContents(mWork.Path());
    std::erase(after, L"out");
    EXPECT_EQ(after, before);
}

const BadRun kBadRuns[] = {
    {"MissingFile", nullptr, "", {L"absent.pgm"}, "absent.pgm"},
    {"TruncatedPgm", L"short.pgm", "P5\n4 4\n65535\n0123456789", {L"short.pgm"}, "short.pgm"},
    {"PgmOfAnotherSize", nullptr, "", {L"f.pgm", L"--width", L"5", L"--height", L"4"}, "f.pgm"},
    {"UnknownType", nullptr, "", {L"f.pgm", L"--type", L"UInt12", L"--width", L"4"}, "--type"},
    {"UnknownUnit", nullptr, "", {L"f.pgm", L"--unit", L"Kelvinn"}, "--unit"},
    {"PresetAboveThree", nullptr, "", {L"f.pgm", L"--preset", L"7"}, "--preset"},
    {"MapOfAnotherSize",
     L"map.pgm",
     "P5\n2 2\n255\n\1\2\3\1",
     {L"f.pgm", L"--preset-map", L"map.pgm"},
     "map.pgm"},
    {"FolderWithoutFrames", L"empty", "", {L"empty"}, "empty"},
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

    ExpectOneLineFailure(Convert({L"scene.pgm", L"--pfm", L"--png"}), GetParam().named);

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
