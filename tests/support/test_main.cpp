// Test programs end with a failure code on a crash instead of starting Wine's debugger, which
// would stall the test until its timeout.
#include <windows.h>

#include <cstdio>

#include <gtest/gtest.h>

namespace {

LONG WINAPI ReportCrash(EXCEPTION_POINTERS* info) {
    const EXCEPTION_RECORD* record = info->ExceptionRecord;
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(record->ExceptionAddress), &module);
    wchar_t name[MAX_PATH] = L"?";
    if (module != nullptr) {
        GetModuleFileNameW(module, name, MAX_PATH);
    }
    const auto offset =
        static_cast<const char*>(record->ExceptionAddress) - reinterpret_cast<const char*>(module);
    std::fprintf(stderr, "crash: exception 0x%08lx in %ls at offset 0x%llx\n",
                 record->ExceptionCode, name, static_cast<unsigned long long>(offset));
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 3);
    return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

int main(int argc, char** argv) {
    SetUnhandledExceptionFilter(ReportCrash);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
