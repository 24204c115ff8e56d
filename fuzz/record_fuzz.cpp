// The record file readers on any bytes, the same bytes read as both kinds of record.
#include "input_file.h"
#include "record_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile input("record.txt");
    const auto& file = input.Write(data, size);
    std::string error;
    vz::reduce::CQuilloFactoryCalReduceObject record;
    fuzz::Require(formats::ReadFactoryCal(file, record, error) || !error.empty());
    error.clear();
    vz::reduce::CObjectParametersReduceObject params;
    fuzz::Require(formats::ReadObjectParams(file, params, error) || !error.empty());
    return 0;
}
