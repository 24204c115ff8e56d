// The command line: values refused with a message naming the option, and what options imply.
#include <gtest/gtest.h>

#include "options.h"

namespace {

using convert::Options;

struct BadCommandLine {
    std::vector<std::wstring> arguments;
    std::string named; // what the message must name
};

// Test names show the arguments (all ASCII).
void PrintTo(const BadCommandLine& bad, std::ostream* out) {
    for (const std::wstring& argument : bad.arguments) {
        *out << std::string(argument.begin(), argument.end()) << ' ';
    }
}

class RefusedOptions : public testing::TestWithParam<BadCommandLine> {};

TEST_P(RefusedOptions, NameTheOptionAtFault) {
    std::vector<std::wstring> arguments{L"frame.pgm"};
    arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
    Options options;
    std::string error;
    EXPECT_FALSE(convert::ParseOptions(arguments, options, error));
    EXPECT_NE(error.find(GetParam().named), std::string::npos) << error;
}

INSTANTIATE_TEST_SUITE_P(
    , RefusedOptions,
    // Unknown types and units and presets above three: see the BadInput runs of the program.
    testing::Values(BadCommandLine{{L"--preset", L"-1"}, "--preset"},
                    BadCommandLine{{L"--factory-cal", L"4=cal.txt"}, "--factory-cal"},
                    BadCommandLine{{L"--emissivity", L"1.5"}, "--emissivity"},
                    BadCommandLine{{L"--reflected", L"-300"}, "--reflected"},
                    BadCommandLine{{L"--range", L"40:10"}, "--range"},
                    BadCommandLine{{L"--width", L"0"}, "--width"},
                    BadCommandLine{{L"--height", L"12x"}, "--height"},
                    BadCommandLine{{L"--bogus"}, "--bogus"},
                    BadCommandLine{{L"--pfm=yes"}, "--pfm"},
                    BadCommandLine{{L"--preset", L"1", L"--preset-map", L"m.pgm"}, "--preset-map"},
                    BadCommandLine{{L"--keys", L"k.pgm"}, "--key-table"},
                    BadCommandLine{{L"--type", L"UInt16", L"--width", L"4"}, "--height"},
                    BadCommandLine{{L"--out"}, "--out"}));

TEST(Options, TakeValuesAfterTheOptionOrAnEqualsSign) {
    const std::vector<std::wstring> arguments{
        L"a.raw",           L"--type=float",  L"--width",   L"8",      L"--height=6",
        L"--range=-5:-1",   L"--factory-cal", L"2=two.txt", L"--csv",  L"--keys",
        L"k.pgm",           L"--key-table",   L"t.txt",     L"--unit", L"fahrenheit",
        L"--reflected=-10", L"b.raw"};
    Options options;
    std::string error;
    ASSERT_TRUE(convert::ParseOptions(arguments, options, error)) << error;
    ASSERT_EQ(options.inputs.size(), 2u);
    ASSERT_TRUE(options.raw);
    EXPECT_EQ(options.raw->type, vz::Float);
    EXPECT_EQ(options.raw->width, 8u);
    EXPECT_EQ(options.raw->height, 6u);
    ASSERT_TRUE(options.range);
    EXPECT_EQ(options.range->low, -5.0f);
    EXPECT_EQ(options.range->high, -1.0f);
    EXPECT_EQ(options.factoryCal[2], std::filesystem::path(L"two.txt"));
    EXPECT_FALSE(options.factoryCal[0]);
    EXPECT_EQ(options.dispatch, convert::Dispatch::Keyed);
    EXPECT_EQ(options.unit, vz::eFahrenheit);
    EXPECT_EQ(options.reflectedC, -10.0f);
    EXPECT_TRUE(options.csv);
    EXPECT_FALSE(options.png) << "an output was chosen, so no PNG by default";
}

} // namespace
