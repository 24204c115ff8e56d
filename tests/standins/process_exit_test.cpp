#include "probe_process.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct ExitCase {
    const wchar_t* registrations; // in the order the probe makes them
    const char* expectedOutput;   // the order vz.dll deletes them in
};

class DeleteAtProcessExit : public testing::TestWithParam<ExitCase> {};

TEST_P(DeleteAtProcessExit, RunsLowerOrdersFirstAndLaterRegistrationsFirst) {
    const ProbeResult result =
        RunProbe(std::wstring(L"delete-at-exit ") + GetParam().registrations);

    EXPECT_EQ(result.exitCode, 0u) << result.errors;
    EXPECT_EQ(result.output, GetParam().expectedOutput);
}

INSTANTIATE_TEST_SUITE_P(
    Orders, DeleteAtProcessExit,
    testing::Values(ExitCase{L"", ""}, ExitCase{L"a:1 b:2 c:3", "a b c "},
                    ExitCase{L"c:3 b:2 a:1", "a b c "}, ExitCase{L"a:7 b:7 c:7", "c b a "},
                    ExitCase{L"a:2 b:1 c:2 d:1", "d b c a "},
                    ExitCase{L"late:4294967295 first:0", "first late "},
                    ExitCase{L"late:5 singleton early:1", "early singleton late "}));

TEST(DefaultLogWriter, WritesUtf8LinesToStandardError) {
    const ProbeResult result = RunProbe(L"log");

    EXPECT_EQ(result.exitCode, 0u);
    // Standard error is a text stream: the line ends as Windows text lines do.
    EXPECT_EQ(result.errors, "Gr\xC3\xBC\xC3\x9F"
                             "e from vz\r\n");
    EXPECT_EQ(result.output, "");
}

} // namespace
