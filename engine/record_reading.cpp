#include <ostrel.h>

#include <filesystem>
#include <string>

#include "failure_note.h"
#include "record_files.h"

namespace vz {
namespace {

template <class Record, class Reader>
bool ReadRecordFile(const wchar_t* file, Record* record, Reader read) noexcept {
    failure_note::Clear();
    if (file == nullptr || *file == L'\0' || record == nullptr) {
        failure_note::Write("no file or no record given");
        return false;
    }
    try {
        std::string error;
        if (read(std::filesystem::path(file), *record, error)) {
            return true;
        }
        failure_note::Write(error.c_str());
    } catch (...) {
        failure_note::Write("out of memory reading a record file");
    }
    return false;
}

} // namespace

bool ReadFactoryCalFile(const wchar_t* file, reduce::CQuilloFactoryCalReduceObject* record) {
    return ReadRecordFile(file, record, formats::ReadFactoryCal);
}

bool ReadObjectParamsFile(const wchar_t* file, reduce::CObjectParametersReduceObject* params) {
    return ReadRecordFile(file, params, formats::ReadObjectParams);
}

} // namespace vz
