// The C example against the simulator (the mingw-clang build runs it as clang built it).
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "program_run.h"
#include "record_files.h"
#include "test_files.h"

namespace {

class CExample : public testing::Test {
protected:
    testfiles::ProgramResult Run(const std::wstring& factoryCal) {
        const std::filesystem::path samples = formats::SamplesFolder();
        return testfiles::RunProgram(L"ostrel-c-example.exe",
                                     {factoryCal, (samples / L"object_params.txt").wstring()},
                                     mWork.Path());
    }
    const testfiles::ScratchFolder mWork{L"c-example"};
};

// The frame's counts run from the calibrated range's low end to its high end.
TEST_F(CExample, ConvertsAFrameAcrossTheCalibratedRange) {
    const auto result = Run((formats::SamplesFolder() / L"factory_cal.txt").wstring());
    ASSERT_EQ(result.exitCode, 0u) << result.err;
    EXPECT_NE(result.out.find("Connected to camera server 5.92.0."), std::string::npos);
    int pixels = 0, valid = 0;
    float low = 0, high = 0;
    const auto line = result.out.find("Uniform, preset 0, Celsius:");
    ASSERT_NE(line, std::string::npos) << result.out;
    ASSERT_EQ(std::sscanf(result.out.c_str() + line,
                          "Uniform, preset 0, Celsius: %d pixels from %f to %f, mean %*f, %d valid",
                          &pixels, &low, &high, &valid),
              4);
    EXPECT_EQ(pixels, 64 * 48);
    EXPECT_NEAR(low, -20.0f, 2.5f);
    EXPECT_NEAR(high, 150.0f, 8.0f);
    EXPECT_GT(valid, pixels * 9 / 10);
}

TEST_F(CExample, NamesAFileItCantReadInOneLine) {
    const auto result = Run(L"missing.txt");
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_EQ(result.err, "ostrel-c-example: ostrel_engine_load_factory_cal: the record file "
                          "can't be read or is malformed: missing.txt: can't be read\r\n");
}

} // namespace
