// Every shipped binary carries the package's version in its version resource, and
// ostrel-convert --version reports the ostrel.dll it loaded, read from that resource; the C
// interface reports the same version.
#include <windows.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ostrel_c.h>

#include "program.h"

namespace {

const std::wstring kVersion = L"" OSTREL_PACKAGE_VERSION;

std::filesystem::path BinaryFolder() {
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    return std::filesystem::path(self).parent_path();
}

std::wstring Text(const std::vector<BYTE>& resource, const std::wstring& name) {
    wchar_t* text = nullptr;
    UINT length = 0;
    const std::wstring path = L"\\StringFileInfo\\040904B0\\" + name;
    if (!VerQueryValueW(resource.data(), path.c_str(), reinterpret_cast<void**>(&text), &length) ||
        length == 0) {
        return {};
    }
    return std::wstring(text, length - 1);
}

class VersionResource : public testing::TestWithParam<const wchar_t*> {};

TEST_P(VersionResource, CarriesThePackageVersion) {
    const std::wstring file = (BinaryFolder() / GetParam()).wstring();
    DWORD ignored = 0;
    std::vector<BYTE> resource(GetFileVersionInfoSizeW(file.c_str(), &ignored));
    ASSERT_FALSE(resource.empty()) << "no version resource";
    ASSERT_TRUE(
        GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data()));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT size = 0;
    ASSERT_TRUE(VerQueryValueW(resource.data(), L"\\", reinterpret_cast<void**>(&fixed), &size));
    const std::wstring fixedVersion = std::to_wstring(HIWORD(fixed->dwFileVersionMS)) + L'.' +
                                      std::to_wstring(LOWORD(fixed->dwFileVersionMS)) + L'.' +
                                      std::to_wstring(HIWORD(fixed->dwFileVersionLS));
    EXPECT_EQ(fixedVersion, kVersion);
    EXPECT_EQ(fixed->dwProductVersionMS, fixed->dwFileVersionMS);
    EXPECT_EQ(Text(resource, L"FileVersion"), kVersion);
    EXPECT_EQ(Text(resource, L"ProductVersion"), kVersion);
    EXPECT_EQ(Text(resource, L"OriginalFilename"), GetParam());
    for (const wchar_t* name : {L"CompanyName", L"ProductName", L"FileDescription"}) {
        EXPECT_NE(Text(resource, name), L"") << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Shipped, VersionResource,
                         testing::Values(L"ostrel.dll", L"vz.dll", L"vz.reduce.dll", L"camsim.exe",
                                         L"ostrel-convert.exe", L"ostrel-c-example.exe",
                                         L"ostrel-stress.exe"));

// What the C interface and its header say is the package's version too.
TEST(CVersion, IsThePackageVersion) {
    EXPECT_EQ(ostrel_version(), OSTREL_VERSION_NUMBER);
    EXPECT_EQ(std::to_string(ostrel_version() / 1000000) + "." +
                  std::to_string(ostrel_version() / 1000 % 1000) + "." +
                  std::to_string(ostrel_version() % 1000),
              OSTREL_PACKAGE_VERSION);
    EXPECT_STREQ(OSTREL_VERSION_STRING, OSTREL_PACKAGE_VERSION);
}

TEST(ConvertVersion, NamesTheLoadedLibraryAndItsVersion) {
    std::ostringstream out;
    std::ostringstream err;
    const std::vector<std::wstring> arguments{L"--version"};
    ASSERT_EQ(convert::Run(arguments, out, err), 0) << err.str();
    const std::string library = (BinaryFolder() / L"ostrel.dll").string();
    EXPECT_EQ(out.str(), "ostrel.dll " OSTREL_PACKAGE_VERSION " (" + library + ")\n");
}

} // namespace
