// The command line: what the options and their values come to (refusals are bad-input runs).
#include <gtest/gtest.h>

#include "options.h"

namespace {

using convert::Options;

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
    EXPECT_EQ(options.type, vz::Float);
    EXPECT_EQ(options.height, 6u);
    ASSERT_TRUE(options.range);
    EXPECT_EQ(options.range->low, -5.0f);
    EXPECT_EQ(options.range->high, -1.0f);
    EXPECT_EQ(options.factoryCal[2], std::filesystem::path(L"two.txt"));
    EXPECT_FALSE(options.factoryCal[0]);
    EXPECT_EQ(options.dispatch, convert::Dispatch::Keyed);
    EXPECT_EQ(options.reflectedC, -10.0f);
    EXPECT_FALSE(options.png) << "an output was chosen, so no PNG by default";
}

TEST(Options, KeepFileNamesExactly) {
    // Latin, CJK, a pair of surrogates, lone surrogates, which only UTF-16 names can hold, and
    // a path from the drive's root.
    for (const std::wstring name : {L"caf\u00E9.pgm", L"\u6E29\u5EA6.pgm", L"\U0001F525.pgm",
                                    L"lone\xD800.pgm", L"\xDC00\xD83D", L"/frames/a.pgm"}) {
        const std::vector<std::wstring> arguments{name, L"--out", name};
        Options options;
        std::string error;
        ASSERT_TRUE(convert::ParseOptions(arguments, options, error)) << error;
        ASSERT_EQ(options.inputs.size(), 1u);
        EXPECT_EQ(options.inputs[0].native(), name);
        EXPECT_EQ(options.outFolder, std::filesystem::path(name));
    }
}

} // namespace
