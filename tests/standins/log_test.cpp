#include <vz/log.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct CapturedLines {
    std::vector<std::wstring> lines;
};

void Capture(const wchar_t* line, void* context) {
    static_cast<CapturedLines*>(context)->lines.push_back(line);
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
    CapturedLines captured;
    vz::gLog->SetWriter(Capture, &captured);

    vz::gLog->WriteLine(L"first");
    vz::gLog->WriteLine(vz::CString(L"second line"));

    EXPECT_EQ(captured.lines, (std::vector<std::wstring>{L"first", L"second line"}));
}

TEST_F(Log, ReplacingTheWriterStopsTheOldOne) {
    CapturedLines first;
    CapturedLines second;
    vz::gLog->SetWriter(Capture, &first);
    vz::gLog->WriteLine(L"a");
    vz::gLog->SetWriter(Capture, &second);
    vz::gLog->WriteLine(L"b");
    vz::gLog->SetWriter(nullptr, nullptr);
    vz::gLog->WriteLine(L"this line goes to standard error");

    EXPECT_EQ(first.lines, std::vector<std::wstring>{L"a"});
    EXPECT_EQ(second.lines, std::vector<std::wstring>{L"b"});
}

// A writer may log again, for instance to report its own trouble.
void CaptureAndEcho(const wchar_t* line, void* context) {
    Capture(line, context);
    if (std::wstring(line) == L"outer") {
        vz::gLog->WriteLine(L"inner");
    }
}

TEST_F(Log, WriterMayLogFromInsideTheWriter) {
    CapturedLines captured;
    vz::gLog->SetWriter(CaptureAndEcho, &captured);

    vz::gLog->WriteLine(L"outer");

    EXPECT_EQ(captured.lines, (std::vector<std::wstring>{L"outer", L"inner"}));
}

} // namespace
