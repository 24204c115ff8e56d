#include <vz/log.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

void Capture(const wchar_t* line, void* context) {
    static_cast<std::vector<std::wstring>*>(context)->push_back(line);
}

// Every test leaves the process-wide log as it found it.
class Log : public testing::Test {
protected:
    void SetUp() override { m_wasVerbose = vz::gLog->getVerbose(); }
    void TearDown() override {
        vz::gLog->SetWriter(nullptr, nullptr);
        vz::gLog->setVerbose(m_wasVerbose);
    }

private:
    bool m_wasVerbose = false;
};

TEST_F(Log, VerboseFlagFollowsTheSetter) {
    vz::gLog->setVerbose(true);
    EXPECT_TRUE(vz::gLog->getVerbose());
    vz::gLog->setVerbose(false);
    EXPECT_FALSE(vz::gLog->getVerbose());
}

TEST_F(Log, WriterReceivesEachLineWithItsContext) {
    std::vector<std::wstring> lines;
    vz::gLog->SetWriter(Capture, &lines);

    vz::gLog->WriteLine(L"first");
    vz::gLog->WriteLine(vz::CString(L"second line"));

    EXPECT_EQ(lines, (std::vector<std::wstring>{L"first", L"second line"}));
}

} // namespace
