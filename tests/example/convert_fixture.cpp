#include "convert_fixture.h"

namespace {

struct Scene {
    Scene() : folder(L"scene") {
        const auto result = testfiles::RunProgram(L"camsim.exe",
                                                  {L"/Scene", L"scene.pgm", L"truth.pfm",
                                                   L"--width", std::to_wstring(kSceneWidth),
                                                   L"--height", std::to_wstring(kSceneHeight)},
                                                  folder.Path());
        made = result.exitCode == 0;
        message = result.err;
    }
    testfiles::ScratchFolder folder;
    bool made = false;
    std::string message;
};

const Scene& TheScene() {
    static const Scene scene;
    return scene;
}

} // namespace

const std::filesystem::path& SceneFrame() {
    static const std::filesystem::path frame = TheScene().folder / L"scene.pgm";
    EXPECT_TRUE(TheScene().made) << "camsim /Scene failed: " << TheScene().message;
    return frame;
}

const std::filesystem::path& SceneTruth() {
    static const std::filesystem::path truth = TheScene().folder / L"truth.pfm";
    EXPECT_TRUE(TheScene().made) << "camsim /Scene failed: " << TheScene().message;
    return truth;
}

std::filesystem::path ConvertProgram::CopyScene(const std::wstring& name) const {
    const std::filesystem::path copy = work_ / name;
    std::filesystem::copy_file(SceneFrame(), copy);
    return copy;
}

void ConvertProgram::ExpectOneLineFailure(const testfiles::ProgramResult& result,
                                          const std::string& named) {
    EXPECT_NE(result.exitCode, 0u);
    EXPECT_NE(result.exitCode, static_cast<DWORD>(STILL_ACTIVE)) << "did not start or end";
    const auto lines = testfiles::Lines(result.err);
    ASSERT_EQ(lines.size(), 1u) << result.err;
    EXPECT_EQ(lines[0].rfind("ostrel-convert: ", 0), 0u) << lines[0];
    EXPECT_NE(lines[0].find(named), std::string::npos) << lines[0];
}
