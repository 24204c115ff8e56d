#include <vz/log.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

void Capture(const wchar_t* line, void* context) {
    static_cast<std::vector<std::wstring>*>(context)->push_back(line);
}

TEST(Log, WriterReceivesEachLineWithItsContext) {
    std::vector<std::wstring> lines;
    vz::gLog->SetWriter(Capture, &lines);

    vz::gLog->WriteLine(L"first");
    vz::gLog->WriteLine(vz::CString(L"second line"));
    vz::gLog->SetWriter(nullptr, nullptr);

    EXPECT_EQ(lines, (std::vector<std::wstring>{L"first", L"second line"}));
}

} // namespace
