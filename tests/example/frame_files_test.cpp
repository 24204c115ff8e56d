// Frames read from PGM and raw files, results written as PGM and PFM, and output that appears
// only when complete.
#include <sstream>

#include <gtest/gtest.h>

#include "frame_files.h"
#include "image_writers.h"
#include "output_file.h"
#include "test_files.h"

namespace {

using testfiles::ScratchFolder;

// The samples' byte order is the raw frames' test's: a PGM and a raw frame of the same counts
// convert alike.
TEST(ReadPgm, ReadsPastHeaderComments) {
    const ScratchFolder folder(L"pgm16");
    const std::string header = "P5 # made by hand\n3 # width\n2\n# maxval next\n65535\n";
    testfiles::WriteBytes(folder / L"a.pgm", header + std::string(12, '\1'));
    formats::Frame frame;
    std::string error;
    ASSERT_TRUE(formats::ReadPgm(folder / L"a.pgm", frame, error)) << error;
    EXPECT_EQ(frame.width, 3u);
    EXPECT_EQ(frame.height, 2u);
    EXPECT_EQ(frame.type, vz::UInt16);
}

TEST(WriteCsv, WritesOneLinePerRowThatReadsBackExactly) {
    std::ostringstream out;
    formats::WriteCsv(out, 2, 2, std::vector<float>{0.1f, -2.0f, 36.6f, 1e-3f});
    EXPECT_EQ(out.str(), "0.1,-2\n36.6,0.001\n");
}

// A frame of several megabytes, written in blocks, still has its rows bottom first.
TEST(WritePfm, WritesRowsBottomFirst) {
    constexpr std::uint32_t kWidth = 1000, kHeight = 600;
    std::vector<float> values(kWidth * kHeight);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = static_cast<float>(i);
    }
    std::ostringstream out;
    formats::WritePfm(out, kWidth, kHeight, values);
    std::string expected = "Pf\n1000 600\n-1.0\n";
    for (std::uint32_t row = kHeight; row-- > 0;) {
        expected.append(reinterpret_cast<const char*>(&values[row * kWidth]),
                        kWidth * sizeof(float));
    }
    EXPECT_TRUE(out.str() == expected);
}

// An output that is not committed leaves nothing: see the converter's test of an output that
// can't be written.
TEST(OutputFile, ReplacesTheFileOnlyWhenCommitted) {
    const ScratchFolder folder(L"commit");
    const auto target = folder / L"result.pfm";
    std::string error;
    testfiles::WriteBytes(target, "old");
    formats::OutputFile file;
    ASSERT_TRUE(file.Open(target, error)) << error;
    file.Stream() << "new";
    EXPECT_EQ(testfiles::ReadBytes(target), "old");
    ASSERT_TRUE(file.Commit(error)) << error;
    EXPECT_EQ(testfiles::ReadBytes(target), "new");
    EXPECT_EQ(testfiles::FolderContents(folder.Path()), std::vector<std::wstring>{L"result.pfm"});
}

} // namespace
