// Runs a program of the build (bin folder) as its own process, its output caught in files.
#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace testfiles {

struct ProgramResult {
    DWORD exitCode = STILL_ACTIVE; // STILL_ACTIVE also when it could not start or hung
    std::string out;
    std::string err;
};

// `program` is a file name in the folder of the running test, or a full path; `work` is its
// current folder. whileRunning, if given, is called about every 100 ms until the program ends.
ProgramResult RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments,
                         const std::filesystem::path& work,
                         const std::function<void()>& whileRunning = {});

// Exit code neither 0 nor STILL_ACTIVE, exactly one line on stderr starting with
// "ostrel-convert: " and containing `named`.
void ExpectOneLineFailure(const ProgramResult& result, const std::string& named);

} // namespace testfiles
