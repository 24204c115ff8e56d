// ostrel-convert.exe where no camera server is registered.
#include "program_run.h"
#include "test_files.h"

#include <gtest/gtest.h>

namespace {

TEST(UnregisteredServer, ConversionFailsWithOneLineAndNoOutput) {
    const testfiles::ScratchFolder work(L"bare");
    testfiles::WritePgm(work / L"f.pgm", 2, 2, {1000, 2000, 3000, 4000}, 65535);

    const auto result =
        testfiles::RunProgram(L"ostrel-convert.exe", {L"f.pgm", L"--pfm", L"--png"}, work.Path());

    EXPECT_NE(result.exitCode, 0u);
    EXPECT_NE(result.exitCode, static_cast<DWORD>(STILL_ACTIVE));
    const auto lines = testfiles::Lines(result.err);
    ASSERT_EQ(lines.size(), 1u) << result.err;
    EXPECT_EQ(lines[0].rfind("ostrel-convert: can't connect to the camera server", 0), 0u)
        << lines[0];
    EXPECT_EQ(testfiles::FolderContents(work.Path()), std::vector<std::wstring>{L"f.pgm"});
}

} // namespace
