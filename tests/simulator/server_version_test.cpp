// The format of the simulator's ServerVersion setting.
#include "server_version.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using camsim::ParseServerVersion;
using camsim::ServerVersion;

struct VersionText {
    std::wstring text;
    std::optional<ServerVersion> expected;
};

void PrintTo(const VersionText& value, std::ostream* out) {
    *out << '"' << std::string(value.text.begin(), value.text.end()) << '"';
}

class SimulatorVersionText : public ::testing::TestWithParam<VersionText> {};

TEST_P(SimulatorVersionText, ParsesExactlyThreeDecimalNumbers) {
    EXPECT_EQ(ParseServerVersion(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    , SimulatorVersionText,
    ::testing::Values(VersionText{L"5.92.0", ServerVersion{5, 92, 0}},
                      VersionText{L"6.0.12", ServerVersion{6, 0, 12}},
                      VersionText{L"4294967295.0.4294967295",
                                  ServerVersion{4294967295u, 0, 4294967295u}},
                      VersionText{L"007.08.09", ServerVersion{7, 8, 9}},
                      VersionText{L"", std::nullopt}, VersionText{L"5.92", std::nullopt},
                      VersionText{L"5.92.0.1", std::nullopt}, VersionText{L"5..0", std::nullopt},
                      VersionText{L"5.92.", std::nullopt}, VersionText{L".5.92", std::nullopt},
                      VersionText{L" 5.92.0", std::nullopt}, VersionText{L"5.92.0 ", std::nullopt},
                      VersionText{L"-5.92.0", std::nullopt}, VersionText{L"5.9a.0", std::nullopt},
                      VersionText{L"4294967296.0.0", std::nullopt}));

} // namespace
