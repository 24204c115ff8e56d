// A machine where the camera server was never registered.
#include <ostrel.h>

#include <gtest/gtest.h>

namespace {

TEST(BareMachine, NoServerGivesAnEmptyCalibrationHandle) {
    COstrelCal cal = GetOstrelCal();
    EXPECT_FALSE(cal);
    EXPECT_TRUE(cal == 0);
    EXPECT_FALSE(cal != 0);
    EXPECT_EQ(nullptr, cal.operator->());
    EXPECT_FALSE(cal.Get());

    COstrelCal copy = cal;
    EXPECT_FALSE(copy);
}

TEST(BareMachine, NoConnectionMeansNoVersion) {
    unsigned long major = 1, minor = 2, build = 3;
    EXPECT_FALSE(GetOstrelVersion(major, minor, build));
    EXPECT_EQ(1u, major);
    EXPECT_EQ(2u, minor);
    EXPECT_EQ(3u, build);
}

} // namespace
