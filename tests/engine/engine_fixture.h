// An engine whose calibration objects are in-process fakes that record every call.
#pragma once

#include <ostrel.h>

#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "fake_calibration.h"

namespace engine_test {

// Writes value(i) into entry i of the named float mapping, as the server does.
void WriteTable(const std::wstring& mappingName, const std::function<float(int)>& value);

// A factory record with distinct values in every field the engine sends.
vz::reduce::CQuilloFactoryCalReduceObject SampleRecord(unsigned kind);

class EngineTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    fake::CalibrationLog& Log() { return server->Log(); }
    size_t CallCount() const { return server->Log().calls.size(); }
    // Makes the slot answer with hr and, where it has one, the success flag ok.
    void Fail(int slot, HRESULT hr = E_FAIL, BOOL ok = TRUE) { Log().results[slot] = {hr, ok}; }
    void Heal(int slot) { Log().results.erase(slot); }
    // The server fills every table with value(i) from now on.
    void ServeTable(std::function<float(int)> value);

    std::unique_ptr<fake::FakeCalibrationServer> server;
    std::unique_ptr<vz::CBroadCal> engine;
};

} // namespace engine_test
