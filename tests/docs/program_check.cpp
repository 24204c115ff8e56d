// Each program a document holds, run with the sample records' folder: it must print exactly the
// output the document shows.
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "program_run.h"
#include "test_files.h"

namespace {

std::vector<std::string> Programs() {
    std::vector<std::string> names;
    std::istringstream list(DOC_PROGRAMS);
    for (std::string name; std::getline(list, name, ',');) {
        names.push_back(name);
    }
    return names;
}

class DocumentPrograms : public testing::TestWithParam<std::string> {};

TEST_P(DocumentPrograms, PrintWhatTheDocumentShows) {
    const std::string name = GetParam();
    std::stringstream expected;
    expected << std::ifstream(std::string(DOC_SNIPPETS_DIR) + "/" + name + "/output.txt").rdbuf();
    const testfiles::ScratchFolder work{L"doc-program"};
    testfiles::ProgramResult result =
        testfiles::RunProgram(L"doc_" + std::wstring(name.begin(), name.end()) + L".exe",
                              {L"" DOC_SAMPLES_DIR}, work.Path());
    std::erase(result.out, '\r');
    EXPECT_EQ(result.exitCode, 0u) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, expected.str());
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentPrograms, testing::ValuesIn(Programs()),
                         [](const testing::TestParamInfo<std::string>& info) {
                             return info.param;
                         });

} // namespace
