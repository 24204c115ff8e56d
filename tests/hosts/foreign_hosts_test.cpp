// Hosts built the ways hosts outside MinGW are built: each runs the C example's steps against the
// simulator, a notification included, and must print exactly what the MinGW build of the C
// example prints.
#include <ostrel.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "program_run.h"
#include "record_files.h"
#include "simulator_control.h"
#include "test_files.h"

namespace {

constexpr ULONGLONG kNotification = 12648430;

struct Host {
    const char* name;     // a test name
    std::wstring program; // in the test's folder, or a full path
    std::vector<std::wstring> leadingArguments;
};

void PrintTo(const Host& host, std::ostream* os) {
    *os << host.name;
}

// The program's output with Windows line ends made Unix ones (Go and Node.js write the latter).
testfiles::ProgramResult RunHost(const Host& host) {
    const testfiles::ScratchFolder work{L"foreign-host"};
    const std::filesystem::path samples = formats::SamplesFolder();
    std::vector<std::wstring> arguments = host.leadingArguments;
    arguments.insert(arguments.end(), {(samples / L"factory_cal.txt").wstring(),
                                       (samples / L"object_params.txt").wstring(), L"30"});
    // The host subscribes some time after it starts: post until it has had one and ended.
    COstrel server = GetOstrel();
    const auto control = simulator::ControlOf(server);
    testfiles::ProgramResult result =
        testfiles::RunProgram(host.program, arguments, work.Path(), [&] {
            if (control) {
                control->PostEvent(kNotification);
            }
        });
    for (std::string* text : {&result.out, &result.err}) {
        for (auto cr = text->find('\r'); cr != std::string::npos; cr = text->find('\r', cr)) {
            text->erase(cr, 1);
        }
    }
    return result;
}

// node.exe finds ostrel.dll where OSTREL_DLL names it: the one beside this test.
void NameTheLibraryForNode() {
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const std::filesystem::path library = std::filesystem::path(self).parent_path() / L"ostrel.dll";
    SetEnvironmentVariableW(L"OSTREL_DLL", library.c_str());
}

const testfiles::ProgramResult& Reference() {
    static const testfiles::ProgramResult reference =
        RunHost({"MinGW", L"ostrel-c-example.exe", {}});
    return reference;
}

class ForeignHosts : public testing::TestWithParam<Host> {};

TEST_P(ForeignHosts, PrintWhatTheCExamplePrints) {
    NameTheLibraryForNode();
    const testfiles::ProgramResult& reference = Reference();
    ASSERT_EQ(reference.exitCode, 0u) << reference.err;
    ASSERT_NE(reference.out.find("Notification: " + std::to_string(kNotification) + "\n"),
              std::string::npos)
        << reference.out;
    const testfiles::ProgramResult result = RunHost(GetParam());
    EXPECT_EQ(result.exitCode, 0u) << result.err;
    EXPECT_EQ(result.out, reference.out);
    EXPECT_EQ(result.err, "");
}

std::vector<Host> Hosts() {
    return {
        {"MsvcC", L"ostrel-c-example-msvc-c.exe", {}},
        {"MsvcCxx", L"ostrel-c-example-msvc-cpp.exe", {}},
        {"Go", L"ostrel-go-example.exe", {}},
        {"NodeJs", L"" OSTREL_NODE_EXE, {L"" OSTREL_NODE_SCRIPT}},
    };
}

INSTANTIATE_TEST_SUITE_P(Builds, ForeignHosts, testing::ValuesIn(Hosts()),
                         [](const testing::TestParamInfo<Host>& info) { return info.param.name; });

} // namespace
