// The simulator's sample records (simulator/samples, copied beside the test program).
#pragma once

#include <map>
#include <optional>
#include <string>

// Field name to value, as the file's "name = value" lines give them.
using SampleRecord = std::map<std::string, double>;

// Empty when the file is missing or a line is malformed.
std::optional<SampleRecord> ReadSample(const wchar_t* fileName);
