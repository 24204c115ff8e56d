// Frames read from PGM and raw files, results written as PGM and PFM, and output that appears
// only when complete.
#include <cstring>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "frame_files.h"
#include "image_writers.h"
#include "output_file.h"
#include "test_files.h"

namespace {

using testfiles::ScratchFolder;

std::vector<std::uint16_t> Elements16(const formats::Frame& frame) {
    std::vector<std::uint16_t> values(frame.PixelCount());
    std::memcpy(values.data(), frame.data.data(), frame.data.size());
    return values;
}

TEST(ReadPgm, Reads16BitBigEndianSamplesPastHeaderComments) {
    const ScratchFolder folder(L"pgm16");
    const std::string header = "P5 # made by hand\n3 # width\n2\n# maxval next\n65535\n";
    const std::string samples("\x00\x01\x01\x00\xff\xfe\x12\x34\x80\x00\x00\x00", 12);
    testfiles::WriteBytes(folder / L"a.pgm", header + samples);
    formats::Frame frame;
    std::string error;
    ASSERT_TRUE(formats::ReadPgm(folder / L"a.pgm", frame, error)) << error;
    EXPECT_EQ(frame.width, 3u);
    EXPECT_EQ(frame.height, 2u);
    EXPECT_EQ(frame.type, vz::UInt16);
    EXPECT_EQ(Elements16(frame),
              (std::vector<std::uint16_t>{0x0001, 0x0100, 0xFFFE, 0x1234, 0x8000, 0x0000}));
}

TEST(WriteCsv, WritesOneLinePerRowThatReadsBackExactly) {
    std::ostringstream out;
    formats::WriteCsv(out, 2, 2, std::vector<float>{0.1f, -2.0f, 36.6f, 1e-3f});
    EXPECT_EQ(out.str(), "0.1,-2\n36.6,0.001\n");
}

TEST(OutputFile, AppearsOnlyWhenCommitted) {
    const ScratchFolder folder(L"commit");
    const auto target = folder / L"result.pfm";
    std::string error;
    {
        formats::OutputFile file;
        ASSERT_TRUE(file.Open(target, error)) << error;
        file.Stream() << "partial";
        EXPECT_FALSE(std::filesystem::exists(target));
    }
    EXPECT_TRUE(testfiles::FolderContents(folder.Path()).empty())
        << "an output that was not committed leaves nothing";

    testfiles::WriteBytes(target, "old");
    formats::OutputFile file;
    ASSERT_TRUE(file.Open(target, error)) << error;
    file.Stream() << "new";
    ASSERT_TRUE(file.Commit(error)) << error;
    EXPECT_EQ(testfiles::ReadBytes(target), "new");
    EXPECT_EQ(testfiles::FolderContents(folder.Path()), std::vector<std::wstring>{L"result.pfm"});
}

} // namespace
