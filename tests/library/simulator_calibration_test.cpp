// Calibration handles against the simulator process, through ostrel.dll as a host links it.
#include <ostrel.h>

#include <objbase.h>

#include <gtest/gtest.h>

#include <unique_resource.h>

#include "apartment.h"
#include "simulator_control.h"

namespace {

TEST(SimulatorCalibration, HandlesReachTheServerAndTheLastOneReleasesEverything) {
    ASSERT_FALSE(ThreadHasApartment());
    owners::UniqueHandle server;
    {
        COstrelCal cal = GetOstrelCal();
        ASSERT_TRUE(cal) << "is the simulator registered?";
        EXPECT_EQ(S_OK, cal->CalIsReady());
        ULONG serverPid = 0;
        ASSERT_EQ(S_OK, simulator::ControlOf(cal)->ProcessId(&serverPid));
        EXPECT_NE(GetCurrentProcessId(), serverPid) << "the object must live in the server process";
        server.reset(OpenProcess(SYNCHRONIZE, FALSE, serverPid));
        ASSERT_TRUE(server);

        COstrelCal copy = cal;
        COstrelCal other = GetOstrelCal();
        EXPECT_EQ(S_OK, copy->CalIsReady());
        EXPECT_EQ(S_OK, other->CalIsReady());
        EXPECT_TRUE(ThreadHasApartment());
    }
    EXPECT_FALSE(ThreadHasApartment()) << "the library kept its apartment";

    // With its last object released, the server process ends by itself.
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(server.get(), 20000));
}

} // namespace
