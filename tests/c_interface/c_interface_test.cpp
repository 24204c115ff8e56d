// The C interface against the simulator: what its boundary refuses, the status of a failing
// server call, results bit for bit those of the C++ calls, and notifications to a C callback.
#include <ostrel.h>
#include <ostrel_c.h>
#include <server_slots.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "message_pump.h"
#include "simulator_control.h"

namespace {

const std::string kFactoryCal = OSTREL_SAMPLES_DIR "/factory_cal.txt";
const std::string kObjectParams = OSTREL_SAMPLES_DIR "/object_params.txt";

class CInterface : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(ostrel_engine_create(&mEngine), OSTREL_OK);
        ASSERT_EQ(ostrel_engine_load_factory_cal(mEngine, 0, kFactoryCal.c_str()), OSTREL_OK)
            << "is the simulator registered?";
        ASSERT_EQ(ostrel_engine_load_object_params(mEngine, kObjectParams.c_str()), OSTREL_OK);
    }
    void TearDown() override { EXPECT_EQ(ostrel_engine_destroy(mEngine), OSTREL_OK); }

    ostrel_engine* mEngine = nullptr;
};

// Each call is made as its row is built.
TEST_F(CInterface, TheBoundaryRefusesWhatTheCppInterfaceTrusts) {
    const std::uint16_t in[4] = {30000, 30000, 30000, 30000};
    std::vector<float> out(4, -1.0f);
    std::vector<std::uint8_t> status(4, 9);
    float* o = out.data();
    std::uint8_t* s = status.data();
    const std::uint8_t map[4] = {0, 0, 0, 0};
    const std::uint32_t keys[4] = {0, 0, 0, 0};
    ostrel_engine* e = mEngine;
    const ostrel_factory_cal record{};
    float temp = -1.0f;
    const std::pair<const char*, ostrel_status> calls[] = {
        {"no engine", ostrel_convert_uniform(nullptr, 0, in, 3, o, 8, 4, s, 0)},
        {"no input", ostrel_convert_uniform(e, 0, nullptr, 3, o, 8, 4, s, 0)},
        {"no output", ostrel_convert_uniform(e, 0, in, 3, nullptr, 8, 4, s, 0)},
        {"preset 4", ostrel_convert_uniform(e, 4, in, 3, o, 8, 4, s, 0)},
        {"input type 10", ostrel_convert_uniform(e, 0, in, 10, o, 8, 4, s, 0)},
        {"output type 10", ostrel_convert_uniform(e, 0, in, 3, o, 10, 4, s, 0)},
        {"no pixels", ostrel_convert_uniform(e, 0, in, 3, o, 8, 0, s, 0)},
        {"unit 4", ostrel_convert_uniform(e, 0, in, 3, o, 8, 4, s, 4)},
        {"no preset map", ostrel_convert_mapped(e, nullptr, in, 3, o, 8, 4, nullptr, 0)},
        {"no keys", ostrel_convert_keyed(e, nullptr, map, in, 3, o, 8, 4, nullptr, 0)},
        {"no key table", ostrel_convert_keyed(e, keys, nullptr, in, 3, o, 8, 4, nullptr, 0)},
        {"one count, preset 4", ostrel_counts_to_temp(e, 4, 30000, &temp, nullptr, 0)},
        {"record of preset 4", ostrel_engine_set_factory_cal(e, 4, &record)},
        {"no record", ostrel_engine_set_factory_cal(e, 0, nullptr)},
        {"no file name", ostrel_engine_load_object_params(e, nullptr)},
        {"table unit 7", ostrel_engine_set_table_unit(e, 7)},
        {"no active flags", ostrel_engine_set_active_presets(e, nullptr)},
        {"no version outputs", ostrel_server_version(nullptr, nullptr, nullptr)},
        {"no callback", ostrel_subscribe(nullptr, nullptr, nullptr)},
    };
    for (const auto& [label, result] : calls) {
        EXPECT_EQ(result, OSTREL_BAD_ARGUMENT) << label;
    }
    EXPECT_EQ(out, std::vector<float>(4, -1.0f));
    EXPECT_EQ(status, std::vector<std::uint8_t>(4, 9));
    EXPECT_EQ(temp, -1.0f);
    ostrel_factory_cal stored{};
    ASSERT_EQ(ostrel_engine_get_factory_cal(mEngine, 0, &stored), OSTREL_OK);
    EXPECT_NE(stored.countsHigh, 0u) << "a refused call changed the record";
    EXPECT_EQ(ostrel_engine_load_factory_cal(mEngine, 1, "no such file.txt"), OSTREL_BAD_FILE);
}

TEST(CInterfaceStatus, EveryCodeHasATextOfItsOwn) {
    std::set<std::string> texts;
    for (ostrel_status code = OSTREL_OK; code <= OSTREL_WRONG_THREAD; ++code) {
        texts.insert(ostrel_status_text(code));
    }
    EXPECT_EQ(texts.size(), std::size_t{OSTREL_WRONG_THREAD + 1});
    EXPECT_EQ(texts.count("unknown status"), 0u);
    EXPECT_STREQ(ostrel_status_text(-1), "unknown status");
}

// The C handle is the C++ engine, so both interfaces see one engine state.
TEST_F(CInterface, ResultsAreThoseOfTheCppCalls) {
    auto& engine = *reinterpret_cast<vz::CBroadCal*>(mEngine);
    std::uint16_t counts[5] = {0, 12000, 30000, 45000, 65535};
    double viaC[5] = {}, viaCpp[5] = {};
    std::uint8_t statusC[5] = {}, statusCpp[5] = {};
    ASSERT_EQ(ostrel_convert_uniform(mEngine, 0, counts, OSTREL_UINT16, viaC, OSTREL_DOUBLE, 5,
                                     statusC, OSTREL_FAHRENHEIT),
              OSTREL_OK);
    ASSERT_TRUE(engine.CountsToTemp(0, {counts, OSTREL_UINT16}, {viaCpp, OSTREL_DOUBLE}, 5,
                                    statusCpp, vz::eFahrenheit));
    EXPECT_EQ(std::memcmp(viaC, viaCpp, sizeof viaC), 0);
    EXPECT_EQ(std::memcmp(statusC, statusCpp, sizeof statusC), 0);
    float one = 0;
    std::uint8_t mark = 9;
    ASSERT_EQ(ostrel_counts_to_temp(mEngine, 0, 30000, &one, &mark, OSTREL_RANKINE), OSTREL_OK);
    float oneCpp = 0;
    ASSERT_TRUE(engine.CountsToTemp(0, 30000, &oneCpp, nullptr, vz::eRankine));
    EXPECT_EQ(std::memcmp(&one, &oneCpp, sizeof one), 0);
}

// A server call that fails gives its status; the test without a server sees an engine that is not
// ready.
TEST_F(CInterface, AFailingServerCallHasItsStatus) {
    COstrelCal calibration = GetOstrelCal();
    const auto control = simulator::ControlOf(calibration);
    ASSERT_TRUE(control);
    ASSERT_EQ(ostrel_engine_set_table_unit(mEngine, OSTREL_KELVIN), OSTREL_OK);
    ASSERT_EQ(control->SetFault(kSlotComputeLut, 1), S_OK);
    float temp = 0;
    EXPECT_EQ(ostrel_counts_to_temp(mEngine, 0, 30000, &temp, nullptr, OSTREL_CELSIUS),
              OSTREL_SERVER_CALL_FAILED);
    ASSERT_EQ(control->SetFault(kSlotComputeLut, 0), S_OK);
}

void Record(void* context, std::uint64_t value) {
    static_cast<std::vector<std::uint64_t>*>(context)->push_back(value);
}

// The test's thread is the message thread: it pumps while it waits.
TEST(CInterfaceNotifications, ReachTheCallbackOnTheMessageThread) {
    ASSERT_EQ(ostrel_attach_message_thread(), OSTREL_OK);
    EXPECT_EQ(ostrel_attach_message_thread(), OSTREL_WRONG_THREAD);
    std::vector<std::uint64_t> values;
    ostrel_subscription* token = nullptr;
    ASSERT_EQ(ostrel_subscribe(&Record, &values, &token), OSTREL_OK);
    // The message loop creates the window the notifications are sent to.
    PumpMessagesUntil([] { return gOstrelEvents->mHwnd != nullptr; });
    {
        COstrel host = GetOstrel();
        ASSERT_TRUE(host);
        ASSERT_EQ(simulator::ControlOf(host)->PostEvent(0xC0FFEE), S_OK);
    }
    PumpMessagesUntil([&] { return !values.empty(); });
    EXPECT_EQ(values, std::vector<std::uint64_t>{0xC0FFEE});
    EXPECT_EQ(ostrel_unsubscribe(token), OSTREL_OK);
    EXPECT_EQ(gOstrelEvents->mEvent.GetCount(), 0u);
    EXPECT_EQ(ostrel_detach_message_thread(), OSTREL_OK);
}

} // namespace
