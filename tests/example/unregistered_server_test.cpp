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

    testfiles::ExpectOneLineFailure(result, "ostrel-convert: can't connect to the camera server");
    EXPECT_EQ(testfiles::FolderContents(work.Path()), std::vector<std::wstring>{L"f.pgm"});
}

} // namespace
