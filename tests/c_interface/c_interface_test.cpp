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

// Each call is made as its row is built: every pointer argument of every function null alone,
// the others valid, then each value the C++ interface trusts out of range alone.
TEST_F(CInterface, TheBoundaryRefusesWhatTheCppInterfaceTrusts) {
    const std::uint16_t in[4] = {30000, 30000, 30000, 30000};
    std::vector<float> out(4, -1.0f);
    std::vector<std::uint8_t> status(4, 9);
    float* o = out.data();
    std::uint8_t* s = status.data();
    const std::uint8_t map[4] = {0, 0, 0, 0};
    const std::uint32_t keys[4] = {0, 0, 0, 0};
    const std::uint8_t active[4] = {1, 0, 0, 0};
    ostrel_engine* e = mEngine;
    ostrel_factory_cal record{};
    ostrel_object_params params{};
    const char* file = kFactoryCal.c_str();
    float temp = -1.0f, low = -1.0f, high = -1.0f;
    std::uint32_t u32 = 7, u32b = 7, u32c = 7;
    std::uint16_t counts = 7;
    ostrel_subscription* token = nullptr;
    const auto callback = [](void*, std::uint64_t) {};
    const std::pair<const char*, ostrel_status> calls[] = {
        {"version: no major", ostrel_server_version(nullptr, &u32b, &u32c)},
        {"version: no minor", ostrel_server_version(&u32, nullptr, &u32c)},
        {"version: no build", ostrel_server_version(&u32, &u32b, nullptr)},
        {"create: no output", ostrel_engine_create(nullptr)},
        {"set cal: no engine", ostrel_engine_set_factory_cal(nullptr, 0, &record)},
        {"set cal: no record", ostrel_engine_set_factory_cal(e, 0, nullptr)},
        {"load cal: no engine", ostrel_engine_load_factory_cal(nullptr, 0, file)},
        {"load cal: no file name", ostrel_engine_load_factory_cal(e, 0, nullptr)},
        {"get cal: no engine", ostrel_engine_get_factory_cal(nullptr, 0, &record)},
        {"get cal: no record", ostrel_engine_get_factory_cal(e, 0, nullptr)},
        {"set params: no engine", ostrel_engine_set_object_params(nullptr, &params)},
        {"set params: no record", ostrel_engine_set_object_params(e, nullptr)},
        {"load params: no engine", ostrel_engine_load_object_params(nullptr, file)},
        {"load params: no file name", ostrel_engine_load_object_params(e, nullptr)},
        {"get params: no engine", ostrel_engine_get_object_params(nullptr, &params)},
        {"get params: no record", ostrel_engine_get_object_params(e, nullptr)},
        {"set unit: no engine", ostrel_engine_set_table_unit(nullptr, 0)},
        {"get unit: no engine", ostrel_engine_get_table_unit(nullptr, &u32)},
        {"get unit: no output", ostrel_engine_get_table_unit(e, nullptr)},
        {"active: no engine", ostrel_engine_set_active_presets(nullptr, active)},
        {"active: no flags", ostrel_engine_set_active_presets(e, nullptr)},
        {"uniform: no engine", ostrel_convert_uniform(nullptr, 0, in, 3, o, 8, 4, s, 0)},
        {"uniform: no input", ostrel_convert_uniform(e, 0, nullptr, 3, o, 8, 4, s, 0)},
        {"uniform: no output", ostrel_convert_uniform(e, 0, in, 3, nullptr, 8, 4, s, 0)},
        {"mapped: no engine", ostrel_convert_mapped(nullptr, map, in, 3, o, 8, 4, s, 0)},
        {"mapped: no map", ostrel_convert_mapped(e, nullptr, in, 3, o, 8, 4, s, 0)},
        {"mapped: no input", ostrel_convert_mapped(e, map, nullptr, 3, o, 8, 4, s, 0)},
        {"mapped: no output", ostrel_convert_mapped(e, map, in, 3, nullptr, 8, 4, s, 0)},
        {"keyed: no engine", ostrel_convert_keyed(nullptr, keys, map, in, 3, o, 8, 4, s, 0)},
        {"keyed: no keys", ostrel_convert_keyed(e, nullptr, map, in, 3, o, 8, 4, s, 0)},
        {"keyed: no key table", ostrel_convert_keyed(e, keys, nullptr, in, 3, o, 8, 4, s, 0)},
        {"keyed: no input", ostrel_convert_keyed(e, keys, map, nullptr, 3, o, 8, 4, s, 0)},
        {"keyed: no output", ostrel_convert_keyed(e, keys, map, in, 3, nullptr, 8, 4, s, 0)},
        {"one count: no engine", ostrel_counts_to_temp(nullptr, 0, 30000, &temp, s, 0)},
        {"one count: no output", ostrel_counts_to_temp(e, 0, 30000, nullptr, s, 0)},
        {"one temp: no engine", ostrel_temp_to_counts(nullptr, 0, 30.0f, 0, &counts)},
        {"one temp: no output", ostrel_temp_to_counts(e, 0, 30.0f, 0, nullptr)},
        {"times: no engine", ostrel_integration_time_range(nullptr, 0, &u32, &u32b)},
        {"times: no minimum", ostrel_integration_time_range(e, 0, nullptr, &u32b)},
        {"times: no maximum", ostrel_integration_time_range(e, 0, &u32, nullptr)},
        {"range: no engine", ostrel_temp_range(nullptr, 0, 2000, &low, &high)},
        {"range: no minimum", ostrel_temp_range(e, 0, 2000, nullptr, &high)},
        {"range: no maximum", ostrel_temp_range(e, 0, 2000, &low, nullptr)},
        {"subscribe: no callback", ostrel_subscribe(nullptr, nullptr, &token)},
        {"subscribe: no token", ostrel_subscribe(callback, nullptr, nullptr)},
        {"uniform: preset 4", ostrel_convert_uniform(e, 4, in, 3, o, 8, 4, s, 0)},
        {"uniform: input type 10", ostrel_convert_uniform(e, 0, in, 10, o, 8, 4, s, 0)},
        {"uniform: output type 10", ostrel_convert_uniform(e, 0, in, 3, o, 10, 4, s, 0)},
        {"uniform: no pixels", ostrel_convert_uniform(e, 0, in, 3, o, 8, 0, s, 0)},
        {"uniform: unit 4", ostrel_convert_uniform(e, 0, in, 3, o, 8, 4, s, 4)},
        {"one count: preset 4", ostrel_counts_to_temp(e, 4, 30000, &temp, nullptr, 0)},
        {"set cal: preset 4", ostrel_engine_set_factory_cal(e, 4, &record)},
        {"set unit: unit 7", ostrel_engine_set_table_unit(e, 7)},
    };
    for (const auto& [label, result] : calls) {
        EXPECT_EQ(result, OSTREL_BAD_ARGUMENT) << label;
    }
    EXPECT_EQ(out, std::vector<float>(4, -1.0f));
    EXPECT_EQ(status, std::vector<std::uint8_t>(4, 9));
    EXPECT_EQ(temp, -1.0f);
    EXPECT_EQ(low, -1.0f);
    EXPECT_EQ(high, -1.0f);
    EXPECT_EQ(counts, 7u);
    EXPECT_EQ(u32 + u32b + u32c, 21u);
    EXPECT_EQ(token, nullptr);
    ostrel_factory_cal stored{};
    ASSERT_EQ(ostrel_engine_get_factory_cal(mEngine, 0, &stored), OSTREL_OK);
    EXPECT_NE(stored.countsHigh, 0u) << "a refused call changed the record";
    EXPECT_EQ(ostrel_engine_load_factory_cal(mEngine, 1, "no such file.txt"), OSTREL_BAD_FILE);
}

TEST(CInterfaceStatus, EveryCodeHasATextOfItsOwn) {
    std::set<std::string> texts;
    for (ostrel_status code = OSTREL_OK; code <= OSTREL_RELOAD_NEEDED; ++code) {
        texts.insert(ostrel_status_text(code));
    }
    EXPECT_EQ(texts.size(), std::size_t{OSTREL_RELOAD_NEEDED + 1});
    EXPECT_EQ(texts.count("unknown status"), 0u);
    EXPECT_STREQ(ostrel_status_text(-1), "unknown status");
}

// The C interface converts as the C++ engine does, bit for bit.
TEST_F(CInterface, ResultsAreThoseOfTheCppCalls) {
    vz::CBroadCal engine;
    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
    ASSERT_EQ(
        ostrel_engine_get_factory_cal(mEngine, 0, reinterpret_cast<ostrel_factory_cal*>(&record)),
        OSTREL_OK);
    ASSERT_EQ(
        ostrel_engine_get_object_params(mEngine, reinterpret_cast<ostrel_object_params*>(&params)),
        OSTREL_OK);
    ASSERT_TRUE(engine.SetBroadCal(0, &record) && engine.SetObjectParams(&params));
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

// A new engine has all four presets active: per-pixel and keyed conversions fail, without
// reading a table, until all four are loaded, and convert once they are.
TEST(CInterfaceFreshEngine, ConvertsPerPixelOnlyOnceEveryActivePresetIsLoaded) {
    ostrel_engine* engine = nullptr;
    ASSERT_EQ(ostrel_engine_create(&engine), OSTREL_OK);
    const std::uint16_t in[4] = {20000, 25000, 30000, 35000};
    const std::uint8_t map[4] = {0, 1, 2, 3};
    const std::uint32_t keys[4] = {3, 2, 1, 0};
    float mapped[4] = {-1, -1, -1, -1}, keyed[4] = {-1, -1, -1, -1};
    EXPECT_EQ(ostrel_convert_mapped(engine, map, in, 3, mapped, 8, 4, nullptr, 0),
              OSTREL_SERVER_CALL_FAILED);
    EXPECT_EQ(ostrel_convert_keyed(engine, keys, map, in, 3, keyed, 8, 4, nullptr, 0),
              OSTREL_SERVER_CALL_FAILED);
    EXPECT_EQ(mapped[0], -1.0f);
    EXPECT_EQ(keyed[0], -1.0f);
    for (std::uint32_t preset = 0; preset < 4; ++preset) {
        ASSERT_EQ(ostrel_engine_load_factory_cal(engine, preset, kFactoryCal.c_str()), OSTREL_OK);
    }
    ASSERT_EQ(ostrel_convert_mapped(engine, map, in, 3, mapped, 8, 4, nullptr, 0), OSTREL_OK);
    ASSERT_EQ(ostrel_convert_keyed(engine, keys, map, in, 3, keyed, 8, 4, nullptr, 0), OSTREL_OK);
    for (std::uint32_t k = 0; k < 4; ++k) {
        float one = 0;
        ASSERT_EQ(ostrel_counts_to_temp(engine, k, in[k], &one, nullptr, 0), OSTREL_OK);
        EXPECT_EQ(mapped[k], one) << k;
        EXPECT_EQ(keyed[k], one) << k;
    }
    EXPECT_EQ(ostrel_engine_destroy(engine), OSTREL_OK);
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
    EXPECT_EQ(ostrel_unsubscribe(token), OSTREL_BAD_ARGUMENT) << "a token ended twice";
    EXPECT_EQ(ostrel_unsubscribe(reinterpret_cast<ostrel_subscription*>(&values)),
              OSTREL_BAD_ARGUMENT)
        << "a made-up token";
    EXPECT_EQ(ostrel_detach_message_thread(), OSTREL_OK);
}

} // namespace
