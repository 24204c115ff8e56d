// Loading and unloading ostrel.dll without calling it must leave no trace in the process.
#include <windows.h>

#include <objbase.h>
#include <tlhelp32.h>

#include <gtest/gtest.h>

#include <unique_resource.h>

#include "apartment.h"

namespace {

int ThreadsOfThisProcess() {
    const owners::UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    EXPECT_TRUE(snapshot);
    int count = 0;
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Thread32First(snapshot.get(), &entry); more;
         more = Thread32Next(snapshot.get(), &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    return count;
}

TEST(LibraryLoad, LoadingAndUnloadingCreatesNothing) {
    // The system libraries the DLL imports are loaded first, so only the DLL's own work is seen.
    ASSERT_NE(nullptr, LoadLibraryW(L"ole32.dll"));
    ASSERT_NE(nullptr, LoadLibraryW(L"oleaut32.dll"));
    const int threadsBefore = ThreadsOfThisProcess();

    owners::UniqueModule library(LoadLibraryW(L"ostrel.dll"));
    ASSERT_TRUE(library) << "error " << GetLastError();
    EXPECT_EQ(threadsBefore, ThreadsOfThisProcess());
    EXPECT_EQ(nullptr, FindWindowW(L"wcOstrelEvents", nullptr));
    EXPECT_FALSE(ThreadHasApartment());
    WNDCLASSW windowClass;
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"wcOstrelEvents", &windowClass));

    ASSERT_TRUE(FreeLibrary(library.release()));
    EXPECT_EQ(nullptr, GetModuleHandleW(L"ostrel.dll"));
    EXPECT_FALSE(ThreadHasApartment());
    EXPECT_EQ(threadsBefore, ThreadsOfThisProcess());
}

} // namespace
