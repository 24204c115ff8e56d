// Calibration handles against the simulator process, through ostrel.dll as a host links it.
#include <ostrel.h>

#include <objbase.h>

#include <gtest/gtest.h>

namespace {

bool ThreadHasApartment() {
    APTTYPE type;
    APTTYPEQUALIFIER qualifier;
    return SUCCEEDED(CoGetApartmentType(&type, &qualifier));
}

TEST(SimulatorCalibration, HandlesReachTheServerAndTheLastOneReleasesEverything) {
    ASSERT_FALSE(ThreadHasApartment());
    ULONG serverPid = 0;
    {
        COstrelCal cal = GetOstrelCal();
        ASSERT_TRUE(cal) << "is the simulator registered?";
        EXPECT_EQ(S_OK, cal->CalIsReady());
        ASSERT_EQ(S_OK, cal->SimProcessId(&serverPid));
        EXPECT_NE(GetCurrentProcessId(), serverPid) << "the object must live in the server process";

        COstrelCal copy = cal;
        COstrelCal other = GetOstrelCal();
        EXPECT_EQ(S_OK, copy->CalIsReady());
        EXPECT_EQ(S_OK, other->CalIsReady());
        EXPECT_TRUE(ThreadHasApartment());
    }
    EXPECT_FALSE(ThreadHasApartment()) << "the library kept its apartment";

    // With its last object released, the server process ends by itself.
    HANDLE server = OpenProcess(SYNCHRONIZE, FALSE, serverPid);
    if (server != nullptr) {
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(server, 20000));
        CloseHandle(server);
    }
}

} // namespace
