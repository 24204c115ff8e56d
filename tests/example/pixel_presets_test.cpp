// Preset maps and pixel keys with their table that the converter refuses, naming the file.
#include <gtest/gtest.h>

#include "pixel_presets.h"
#include "test_files.h"

namespace {

using testfiles::ScratchFolder;

TEST(PresetMap, RefusesPresetsAboveThreeAndWideImages) {
    const ScratchFolder folder(L"badmap");
    testfiles::WritePgm(folder / L"four.pgm", 2, 1, {0, 4}, 255);
    testfiles::WritePgm(folder / L"wide.pgm", 2, 1, {0, 1}, 65535);
    convert::PresetMap map;
    std::string error;
    EXPECT_FALSE(convert::ReadPresetMap(folder / L"four.pgm", map, error));
    EXPECT_NE(error.find("four.pgm: pixel 1,0 names preset 4"), std::string::npos) << error;
    EXPECT_FALSE(convert::ReadPresetMap(folder / L"wide.pgm", map, error));
    EXPECT_NE(error.find("wide.pgm"), std::string::npos) << error;
}

struct BadKeys {
    std::string table;
    std::string problem;
};

void PrintTo(const BadKeys& bad, std::ostream* out) {
    *out << bad.problem;
}

class RefusedKeys : public testing::TestWithParam<BadKeys> {};

TEST_P(RefusedKeys, NameTheFileAtFault) {
    const ScratchFolder folder(L"badkeys");
    testfiles::WritePgm(folder / L"keys.pgm", 2, 1, {1, 2}, 255);
    testfiles::WriteBytes(folder / L"table.txt", GetParam().table);
    convert::PixelKeys keys;
    std::string error;
    EXPECT_FALSE(convert::ReadPixelKeys(folder / L"keys.pgm", folder / L"table.txt", keys, error));
    EXPECT_NE(error.find(GetParam().problem), std::string::npos) << error;
}

INSTANTIATE_TEST_SUITE_P(, RefusedKeys,
                         testing::Values(BadKeys{"1 0\n", "keys.pgm: key 2 at pixel 1,0 is not in"},
                                         BadKeys{"1 0\n2 4\n", "table.txt:2: preset 4"},
                                         BadKeys{"1 0\n2 1 extra\n", "table.txt:2: expected"},
                                         BadKeys{"1 0\n1 1\n2 1\n",
                                                 "table.txt:2: key 1 is given twice"},
                                         BadKeys{"70000 1\n", "table.txt:1: key 70000"}));

} // namespace
