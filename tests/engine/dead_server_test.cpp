// A server process that dies under a working engine. Under Wine a killed local server's class
// stays registered until the prefix's Wine server restarts, so this runs alone in a fresh prefix.
#include <ostrel.h>

#include <gtest/gtest.h>

#include <unique_resource.h>

#include "record_files.h"
#include "simulator_control.h"

namespace {

TEST(DeadServer, CallsFailWithoutCrashOrHangAndCurrentTablesStillConvert) {
    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
    std::string error;
    ASSERT_TRUE(formats::ReadFactoryCal(OSTREL_SAMPLES_DIR "/factory_cal.txt", record, error));
    ASSERT_TRUE(formats::ReadObjectParams(OSTREL_SAMPLES_DIR "/object_params.txt", params, error));
    vz::CBroadCal engine;
    ASSERT_TRUE(engine.SetBroadCal(0, &record)) << "is the simulator registered?";
    ASSERT_TRUE(engine.SetObjectParams(&params));
    ASSERT_NE(nullptr, engine.GetLUTOutput(0));

    COstrelCal cal = GetOstrelCal();
    ULONG pid = 0;
    ASSERT_EQ(S_OK, simulator::ControlOf(cal)->ProcessId(&pid));
    const owners::UniqueHandle server(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, pid));
    ASSERT_TRUE(server);
    ASSERT_TRUE(TerminateProcess(server.get(), 1));
    ASSERT_EQ(WAIT_OBJECT_0, WaitForSingleObject(server.get(), 10000));

    // The current table needs no server.
    float temp = 0;
    EXPECT_TRUE(engine.CountsToTemp(0, 30000, &temp, nullptr, vz::eCelsius));
    EXPECT_GT(temp, 0.0f);

    // Everything that needs the server fails, and keeps failing the same way when repeated.
    for (int round = 0; round < 2; ++round) {
        engine.setLUTTempType(round == 0 ? vz::eFahrenheit : vz::eKelvin);
        EXPECT_FALSE(engine.UpdateLUT(0));
        EXPECT_EQ(nullptr, engine.GetLUTStatus(0));
        unsigned short counts = 0;
        EXPECT_FALSE(engine.TempToCounts(0, 20.0f, &counts, vz::eCelsius));
        params.objTempA += 1.0f;
        EXPECT_FALSE(engine.SetObjectParams(&params));
        EXPECT_FALSE(engine.SetBroadCal(1, &record));
        unsigned long minTime = 7, maxTime = 7;
        EXPECT_FALSE(engine.GetIntegrationTimeRange(0, minTime, maxTime));
        EXPECT_EQ(7u, minTime);
        EXPECT_EQ(7u, maxTime);
    }
    EXPECT_FALSE(GetOstrelCal()) << "no new calibration object can be had";
    cal.Release();
}

} // namespace
