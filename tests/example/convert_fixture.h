// Runs the converter in a scratch folder of its own, on a scene camsim synthesised once for the
// whole test program.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "program_run.h"
#include "test_files.h"

inline constexpr std::uint32_t kSceneWidth = 64;
inline constexpr std::uint32_t kSceneHeight = 48;

// The scene's true temperatures (Celsius), made with its counts by camsim /Scene on first use.
std::filesystem::path SceneTruth();

class ConvertProgram : public testing::Test {
protected:
    // Runs the converter in this process, with the work folder as the current folder.
    testfiles::ProgramResult Convert(const std::vector<std::wstring>& arguments) const;
    // Runs ostrel-convert.exe as a process of its own, in the work folder.
    testfiles::ProgramResult ConvertProcess(const std::vector<std::wstring>& arguments) const {
        return testfiles::RunProgram(L"ostrel-convert.exe", arguments, mWork.Path());
    }
    // Copies the scene into the work folder under `name`.
    std::filesystem::path CopyScene(const std::wstring& name) const;

    const testfiles::ScratchFolder mWork{L"convert"};
};
