#include "convert_fixture.h"

#include <sstream>

#include "program.h"

namespace {

struct Scene {
    testfiles::ScratchFolder folder{L"scene"};
    testfiles::ProgramResult made = testfiles::RunProgram(
        L"camsim.exe",
        {L"/Scene", L"scene.pgm", L"truth.pfm", L"--width", std::to_wstring(kSceneWidth),
         L"--height", std::to_wstring(kSceneHeight)},
        folder.Path());
};

std::filesystem::path SceneFile(const wchar_t* name) {
    static const Scene scene;
    EXPECT_EQ(scene.made.exitCode, 0u) << "camsim /Scene failed: " << scene.made.err;
    return scene.folder / name;
}

} // namespace

std::filesystem::path SceneTruth() {
    return SceneFile(L"truth.pfm");
}

testfiles::ProgramResult ConvertProgram::Convert(const std::vector<std::wstring>& arguments) const {
    struct CurrentFolder {
        explicit CurrentFolder(const std::filesystem::path& folder) {
            std::filesystem::current_path(folder);
        }
        ~CurrentFolder() { std::filesystem::current_path(previous); }
        const std::filesystem::path previous = std::filesystem::current_path();
    };
    std::ostringstream out;
    std::ostringstream err;
    testfiles::ProgramResult result;
    {
        const CurrentFolder work(mWork.Path());
        result.exitCode = static_cast<DWORD>(convert::Run(arguments, out, err));
    }
    result.out = out.str();
    result.err = err.str();
    return result;
}

std::filesystem::path ConvertProgram::CopyScene(const std::wstring& name) const {
    const std::filesystem::path copy = mWork / name;
    std::filesystem::copy_file(SceneFile(L"scene.pgm"), copy);
    return copy;
}
