// What ostrel_last_error says after a failure: the function, the status's text and the cause the
// library saw (the server method, its slot and HRESULT; the record file's line; a refused server),
// kept per thread. And the log lines a host's handler receives.
#include <ostrel.h>
#include <ostrel_c.h>
#include <server_slots.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <vz/log.h>

#include "host_state.h"
#include "simulator_control.h"

namespace {

using host_state::Engine;

std::string Expected(const char* function, ostrel_status status, const std::string& cause) {
    return std::string(function) + ": " + ostrel_status_text(status) +
           (cause.empty() ? "" : ": " + cause);
}

struct SlotFault {
    const char* name; // a test name
    unsigned long slot;
    long mode;
    const char* function;
    std::function<ostrel_status(ostrel_engine*)> call;
    const char* cause;
};

void PrintTo(const SlotFault& fault, std::ostream* os) {
    *os << fault.name;
}

class LastErrorOfSlotFaults : public testing::TestWithParam<SlotFault> {
protected:
    void SetUp() override {
        mControl = simulator::ControlOf(mCalibration);
        ASSERT_TRUE(mControl) << "is the simulator registered?";
        const host_state::Samples& samples = host_state::LoadSamples();
        ASSERT_EQ(ostrel_engine_set_factory_cal(mEngine.get(), 0, &samples.recordA), OSTREL_OK);
        ASSERT_EQ(ostrel_engine_set_object_params(mEngine.get(), &samples.paramsA), OSTREL_OK);
    }
    void TearDown() override { mControl->SetFault(GetParam().slot, 0); }

    COstrelCal mCalibration = GetOstrelCal();
    Microsoft::WRL::ComPtr<ICamSimControl> mControl;
    Engine mEngine;
};

const ostrel_factory_cal& SampleRecord() {
    return host_state::LoadSamples().recordA;
}

TEST_P(LastErrorOfSlotFaults, NameTheFunctionTheMethodAndTheHresult) {
    const SlotFault& fault = GetParam();
    ASSERT_EQ(mControl->SetFault(fault.slot, fault.mode), S_OK);
    const ostrel_status status = fault.call(mEngine.get());
    ASSERT_EQ(status, OSTREL_SERVER_CALL_FAILED);
    // A failed HRESULT is followed by the system's text for it, which differs between systems.
    const std::string expected = Expected(fault.function, status, fault.cause);
    const std::string said = ostrel_last_error();
    EXPECT_EQ(said.substr(0, expected.size()), expected);
    EXPECT_EQ(said.find_first_of("\r\n"), std::string::npos) << "one line: " << said;
    if (fault.mode == 1) {
        EXPECT_TRUE(said.size() > expected.size() + 3 && said.substr(expected.size(), 2) == " (" &&
                    said.back() == ')')
            << said;
    } else {
        EXPECT_EQ(said, expected);
    }
}

ostrel_status ConvertOne(ostrel_engine* engine) {
    const std::uint16_t counts = 20000;
    float temp = 0;
    return ostrel_convert_uniform(engine, 0, &counts, OSTREL_UINT16, &temp, OSTREL_FLOAT, 1,
                                  nullptr, OSTREL_CELSIUS);
}

INSTANTIATE_TEST_SUITE_P(
    Slots, LastErrorOfSlotFaults,
    testing::Values(
        SlotFault{
            "LoadFailed", kSlotLoadFactory, 1, "ostrel_engine_set_factory_cal",
            [](ostrel_engine* e) { return ostrel_engine_set_factory_cal(e, 1, &SampleRecord()); },
            "CalLoadFactory (slot 17) failed: HRESULT 0x80004005"},
        SlotFault{"ParamsNotDone", kSlotSetObjectParams, 2, "ostrel_engine_set_object_params",
                  [](ostrel_engine* e) {
                      return ostrel_engine_set_object_params(e, &host_state::LoadSamples().paramsB);
                  },
                  "CalSetObjectParams (slot 10) answered that it was not done"},
        SlotFault{"TableFailed", kSlotComputeLut, 1, "ostrel_convert_uniform", ConvertOne,
                  "CalComputeLUT (slot 9) failed: HRESULT 0x80004005"},
        SlotFault{"CountNotDone", kSlotTempToCounts, 2, "ostrel_temp_to_counts",
                  [](ostrel_engine* e) {
                      std::uint16_t counts = 0;
                      return ostrel_temp_to_counts(e, 0, 50.0f, OSTREL_CELSIUS, &counts);
                  },
                  "CalTempToCounts (slot 13) answered that it was not done"},
        SlotFault{"RangeFailed", kSlotIntegrationTimeAt, 1, "ostrel_integration_time_range",
                  [](ostrel_engine* e) {
                      std::uint32_t low = 0, high = 0;
                      return ostrel_integration_time_range(e, 0, &low, &high);
                  },
                  "CalIntegrationTimeAt (slot 18) failed: HRESULT 0x80004005"}),
    [](const testing::TestParamInfo<SlotFault>& info) { return info.param.name; });

// A record file in a scratch folder, removed with it.
class RecordFile {
public:
    explicit RecordFile(const std::string& text) {
        wchar_t folder[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        mPath = std::filesystem::path(folder) /
                ("ostrel-record-" + std::to_string(GetCurrentProcessId()) + ".txt");
        std::ofstream(mPath, std::ios::binary) << text;
    }
    ~RecordFile() { std::filesystem::remove(mPath); }
    std::string Name() const { return mPath.string(); }

private:
    std::filesystem::path mPath;
};

TEST(LastError, NamesTheRecordFilesLineAndField) {
    const RecordFile file("# a factory calibration\ncalKind = 2\ncalCoef1 = warm\n");
    Engine engine;
    ASSERT_EQ(ostrel_engine_load_factory_cal(engine.get(), 0, file.Name().c_str()),
              OSTREL_BAD_FILE);
    EXPECT_EQ(ostrel_last_error(),
              Expected("ostrel_engine_load_factory_cal", OSTREL_BAD_FILE,
                       file.Name() + ":3: \"warm\" is not a valid value for calCoef1"));
}

TEST(LastError, NamesAnArgumentFailureAndAnOldServer) {
    Engine engine;
    EXPECT_EQ(ostrel_convert_uniform(engine.get(), 4, nullptr, OSTREL_UINT16, nullptr, OSTREL_FLOAT,
                                     1, nullptr, OSTREL_CELSIUS),
              OSTREL_BAD_ARGUMENT);
    EXPECT_EQ(ostrel_last_error(), Expected("ostrel_convert_uniform", OSTREL_BAD_ARGUMENT, ""));

    const wchar_t key[] = L"Software\\CamSim";
    const wchar_t old[] = L"5.80.2";
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key, L"ServerVersion", REG_SZ, old, sizeof old),
              ERROR_SUCCESS);
    const ostrel_status refused = ostrel_check_connection();
    RegDeleteKeyValueW(HKEY_CURRENT_USER, key, L"ServerVersion");
    ASSERT_EQ(refused, OSTREL_SERVER_REFUSED);
    EXPECT_EQ(ostrel_last_error(),
              Expected("ostrel_check_connection", OSTREL_SERVER_REFUSED,
                       "the camera server is version 5.80.2, older than 5.90.4"));
}

// Each thread has its own last error, kept through its successful calls until its next failure.
TEST(LastError, IsEachThreadsOwn) {
    Engine engine;
    EXPECT_EQ(ostrel_engine_load_factory_cal(engine.get(), 0, "missing.txt"), OSTREL_BAD_FILE);
    const std::string mine = ostrel_last_error();
    EXPECT_EQ(mine, Expected("ostrel_engine_load_factory_cal", OSTREL_BAD_FILE,
                             "missing.txt: can't be read"));
    std::string otherBefore, otherAfter;
    std::thread([&] {
        otherBefore = ostrel_last_error();
        ostrel_engine_get_table_unit(nullptr, nullptr);
        otherAfter = ostrel_last_error();
    }).join();
    EXPECT_EQ(otherBefore, "");
    EXPECT_EQ(otherAfter, Expected("ostrel_engine_get_table_unit", OSTREL_BAD_ARGUMENT, ""));
    std::uint32_t unit = 99;
    EXPECT_EQ(ostrel_engine_get_table_unit(engine.get(), &unit), OSTREL_OK);
    EXPECT_EQ(ostrel_last_error(), mine);
}

// The library's lines reach the host's handler in UTF-8, and nothing after it is replaced.
TEST(LogHandler, ReceivesTheLinesUntilReplaced) {
    std::vector<std::string> lines;
    const auto collect = [](void* context, const char* line) {
        static_cast<std::vector<std::string>*>(context)->push_back(line);
    };
    ASSERT_EQ(ostrel_set_log_handler(collect, &lines), OSTREL_OK);
    EXPECT_TRUE(vz::gLog->getVerbose()) << "a handler asks for the optional lines";
    vz::gLog->WriteLine(L"Gr\u00fc\u00dfe bei 20 \u00b0C");
    ASSERT_EQ(ostrel_set_log_handler(nullptr, nullptr), OSTREL_OK);
    EXPECT_FALSE(vz::gLog->getVerbose());
    vz::gLog->WriteLine(L"after");
    EXPECT_EQ(lines, std::vector<std::string>{"Gr\xc3\xbc\xc3\x9f"
                                              "e bei 20 \xc2\xb0"
                                              "C"});
}

} // namespace
