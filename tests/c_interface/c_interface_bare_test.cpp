// The C interface on a machine without the camera server.
#include <ostrel_c.h>

#include <string>

#include <gtest/gtest.h>

namespace {

TEST(CInterfaceWithoutServer, SaysSoInItsStatus) {
    EXPECT_EQ(ostrel_check_connection(), OSTREL_NO_SERVER);
    std::uint32_t major = 7, minor = 7, build = 7;
    EXPECT_EQ(ostrel_server_version(&major, &minor, &build), OSTREL_NO_SERVER);
    EXPECT_EQ(major, 7u);
    // The class is not registered; the system's text for that, where it has one, follows.
    const std::string expected = std::string("ostrel_server_version: ") +
                                 ostrel_status_text(OSTREL_NO_SERVER) +
                                 ": CoCreateInstance of the camera server failed: HRESULT "
                                 "0x80040154";
    EXPECT_EQ(std::string(ostrel_last_error()).substr(0, expected.size()), expected);
    ostrel_engine* engine = nullptr;
    ASSERT_EQ(ostrel_engine_create(&engine), OSTREL_OK);
    const ostrel_factory_cal record{};
    EXPECT_EQ(ostrel_engine_set_factory_cal(engine, 0, &record), OSTREL_NOT_READY);
    EXPECT_EQ(ostrel_engine_destroy(engine), OSTREL_OK);
}

} // namespace
