// Loading and unloading ostrel.dll without calling it must leave no trace in the process.
#include <windows.h>

#include <objbase.h>
#include <tlhelp32.h>

#include <gtest/gtest.h>

namespace {

int ThreadsOfThisProcess() {
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    EXPECT_NE(INVALID_HANDLE_VALUE, snapshot);
    int count = 0;
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

bool ThreadHasApartment() {
    APTTYPE type;
    APTTYPEQUALIFIER qualifier;
    return SUCCEEDED(CoGetApartmentType(&type, &qualifier));
}

TEST(LibraryLoad, LoadingAndUnloadingCreatesNothing) {
    // The system libraries the DLL imports are loaded first, so only the DLL's own work is seen.
    ASSERT_NE(nullptr, LoadLibraryW(L"ole32.dll"));
    ASSERT_NE(nullptr, LoadLibraryW(L"oleaut32.dll"));
    const int threadsBefore = ThreadsOfThisProcess();

    HMODULE library = LoadLibraryW(L"ostrel.dll");
    ASSERT_NE(nullptr, library) << "error " << GetLastError();
    EXPECT_EQ(threadsBefore, ThreadsOfThisProcess());
    EXPECT_EQ(nullptr, FindWindowW(L"wcOstrelEvents", nullptr));
    EXPECT_FALSE(ThreadHasApartment());
    WNDCLASSW windowClass;
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"wcOstrelEvents", &windowClass));

    ASSERT_TRUE(FreeLibrary(library));
    EXPECT_EQ(nullptr, GetModuleHandleW(L"ostrel.dll"));
    EXPECT_FALSE(ThreadHasApartment());
    EXPECT_EQ(threadsBefore, ThreadsOfThisProcess());
}

} // namespace
