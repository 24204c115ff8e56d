// Why the C++ interface's calls fail, without a camera server: empty handles, record files.
#include <ostrel.h>

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

namespace {

std::string Failure() {
    return GetOstrelFailure();
}

// The class is not registered; the system's text for that, where it has one, follows.
TEST(ConnectionWithoutServer, SaysWhyTheHandlesAreEmpty) {
    EXPECT_FALSE(GetOstrel());
    const std::string host = "CoCreateInstance of the camera server failed: HRESULT 0x80040154";
    EXPECT_EQ(Failure().substr(0, host.size()), host);
    EXPECT_FALSE(GetOstrelCal());
    const std::string cal = "CoCreateInstance of a calibration object failed: HRESULT 0x80040154";
    EXPECT_EQ(Failure().substr(0, cal.size()), cal);
}

const std::filesystem::path kSamples = OSTREL_SAMPLES_DIR;

TEST(RecordFiles, ReadTheSamples) {
    vz::reduce::CQuilloFactoryCalReduceObject record{};
    ASSERT_TRUE(vz::ReadFactoryCalFile((kSamples / "factory_cal.txt").c_str(), &record))
        << Failure();
    EXPECT_EQ(Failure(), "");
    EXPECT_EQ(record.calKind, 1u);
    EXPECT_EQ(record.countsLow, 860u);
    EXPECT_EQ(record.countsHigh, 63536u);
    vz::reduce::CObjectParametersReduceObject params{};
    ASSERT_TRUE(vz::ReadObjectParamsFile((kSamples / "object_params.txt").c_str(), &params));
    EXPECT_GT(params.objFactorA, 0.0f);
    EXPECT_LE(params.objFactorA, 1.0f);
}

// A failed read names the file and the line; the next read that succeeds empties the text.
TEST(RecordFiles, SayWhyTheyCantBeRead) {
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    const std::filesystem::path file = std::filesystem::path(folder) / "ostrel-bad-record.txt";
    std::ofstream(file, std::ios::binary) << "# params\nobjFactorA = 0.9\nobjFactorA = 0.8\n";
    vz::reduce::CObjectParametersReduceObject params{};
    EXPECT_FALSE(vz::ReadObjectParamsFile(file.c_str(), &params));
    EXPECT_EQ(Failure(), file.string() + ":3: \"objFactorA\" is given twice");
    std::filesystem::remove(file);

    EXPECT_FALSE(vz::ReadObjectParamsFile(file.c_str(), &params));
    EXPECT_EQ(Failure(), file.string() + ": can't be read");
    EXPECT_FALSE(vz::ReadObjectParamsFile(nullptr, &params));
    EXPECT_EQ(Failure(), "no file or no record given");
    EXPECT_FALSE(vz::ReadObjectParamsFile(file.c_str(), nullptr));
    EXPECT_EQ(Failure(), "no file or no record given");

    vz::reduce::CQuilloFactoryCalReduceObject record{};
    EXPECT_TRUE(vz::ReadFactoryCalFile((kSamples / "factory_cal.txt").c_str(), &record));
    EXPECT_EQ(Failure(), "");
}

} // namespace
