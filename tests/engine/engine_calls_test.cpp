// What the engine asks of the calibration service, call by call, seen by a recording fake.
#include <vector>

#include "engine_fixture.h"

namespace engine_test {
namespace {

TEST_F(EngineTest, ANewEngineHoldsDefaultsAndChecksOnlyGetBroadCalsPreset) {
    vz::reduce::CObjectParametersReduceObject params;
    params.objTempA = 999.0f;
    EXPECT_TRUE(engine->GetObjectParams(&params));
    EXPECT_EQ(0.0f, params.objTempA);

    vz::reduce::CQuilloFactoryCalReduceObject record = SampleRecord(2);
    EXPECT_FALSE(engine->GetBroadCal(4, &record));
    EXPECT_EQ(2u, record.calKind) << "a refused preset must write nothing";
    EXPECT_TRUE(engine->GetBroadCal(3, &record));
    EXPECT_EQ(0u, record.calKind);
    EXPECT_EQ(0u, CallCount()) << "none of this needs the server";
}

TEST_F(EngineTest, TheProbeAsksFourNewObjectsOnce) {
    EXPECT_TRUE(engine->isAvailable());
    EXPECT_EQ(4u, server->Objects().size());
    EXPECT_EQ(4u, Log().CallsTo(kSlotIsReady).size());
    EXPECT_TRUE(engine->isAvailable());
    EXPECT_EQ(4u, CallCount()) << "the probe made other calls or was repeated";
}

TEST_F(EngineTest, AFailedProbeIsFinalEvenWhenTheServerRecovers) {
    Fail(kSlotIsReady);
    EXPECT_FALSE(engine->isAvailable());
    const size_t calls = CallCount();
    Heal(kSlotIsReady);
    EXPECT_FALSE(engine->isAvailable());
    auto record = SampleRecord(2);
    EXPECT_FALSE(engine->SetBroadCal(0, &record));
    EXPECT_FALSE(engine->UpdateLUT(0));
    EXPECT_EQ(nullptr, engine->GetLUTOutput(0));
    unsigned short counts = 7;
    EXPECT_FALSE(engine->TempToCounts(0, 20.0f, &counts, vz::eCelsius));
    EXPECT_EQ(7, counts);
    EXPECT_EQ(calls, CallCount()) << "the probe was repeated";
}

class SetBroadCalKinds : public EngineTest, public testing::WithParamInterface<unsigned> {};

TEST_P(SetBroadCalKinds, LoadsTheRecordIntoANewObjectInTheServersOrder) {
    const unsigned kind = GetParam();
    auto record = SampleRecord(kind);
    ASSERT_TRUE(engine->SetBroadCal(2, &record));

    ASSERT_EQ(5u, server->Objects().size()) << "the preset needs a new object of its own";
    EXPECT_EQ(0u, server->Objects()[2]->References()) << "the probe's object was not dropped";
    const std::vector<fake::CalCall> calls(Log().calls.begin() + 4, Log().calls.end());
    const int load = kind == 2 ? kSlotLoadFactoryKind2 : kSlotLoadFactory;
    ASSERT_EQ((std::vector<int>{kSlotIsReady, load, kSlotSetIntegrationTime, kSlotSetAux}),
              Log().SlotsFrom(4));

    std::vector<double> expected{double(kind), 1.5,   2.5,  3.5,     4.5,    5.5,
                                 6.5,          60000, 1000, 423.15f, 253.15f};
    if (kind != 2) {
        expected.push_back(0.25);
    }
    EXPECT_EQ(expected, calls[1].numbers);
    EXPECT_EQ(std::vector<double>{123}, calls[2].numbers) << "integration time is truncated";
    EXPECT_EQ(std::vector<double>{0.75}, calls[3].numbers);

    vz::reduce::CQuilloFactoryCalReduceObject stored;
    ASSERT_TRUE(engine->GetBroadCal(2, &stored));
    EXPECT_EQ(record.integrationTime, stored.integrationTime);
}

INSTANTIATE_TEST_SUITE_P(Kinds, SetBroadCalKinds, testing::Values(2u, 7u));

// A failure at any step returns false and keeps the record stored before.
class SetBroadCalFailures : public EngineTest, public testing::WithParamInterface<int> {};

TEST_P(SetBroadCalFailures, KeepTheFormerRecord) {
    ASSERT_TRUE(engine->isAvailable());
    const int slot = GetParam();
    // A zero success flag fails like a negative result; the probe has no flag.
    Fail(slot, slot == kSlotIsReady ? E_FAIL : S_OK, FALSE);
    auto record = SampleRecord(2);
    EXPECT_FALSE(engine->SetBroadCal(1, &record));
    vz::reduce::CQuilloFactoryCalReduceObject stored;
    ASSERT_TRUE(engine->GetBroadCal(1, &stored));
    EXPECT_EQ(0u, stored.countsHigh);
    EXPECT_EQ(slot, Log().calls.back().slot) << "the sequence went on after a failure";
}

INSTANTIATE_TEST_SUITE_P(Steps, SetBroadCalFailures,
                         testing::Values(kSlotIsReady, kSlotLoadFactoryKind2, kSlotSetAux));

vz::reduce::CObjectParametersReduceObject Params(float emissivity, float reflectedK,
                                                 float atmosphereK, float transmission) {
    vz::reduce::CObjectParametersReduceObject params;
    params.objFactorA = emissivity;
    params.objTempA = reflectedK;
    params.objTempB = atmosphereK;
    params.objFactorB = transmission;
    return params;
}

TEST_F(EngineTest, ObjectParamsGoToAllFourPresetsInCelsiusOnlyWhenChanged) {
    auto params = Params(0.95f, 293.15f, 300.5f, 0.8f);
    ASSERT_TRUE(engine->SetObjectParams(&params));
    const auto sent = Log().CallsTo(kSlotSetObjectParams);
    ASSERT_EQ(4u, sent.size());
    // Temperatures in Celsius, as the engine works them out in double.
    const std::vector<double> expected{0.95f, static_cast<float>(double(293.15f) - 273.15), 0.8f,
                                       static_cast<float>(double(300.5f) - 273.15), 1};
    for (const fake::CalCall& call : sent) {
        EXPECT_EQ(expected, call.numbers);
    }
    EXPECT_EQ(8u, CallCount()) << "only the probe and the parameters go to the server";

    // Parameters that differ only in words the server doesn't read are not sent again.
    auto distance = params;
    distance.distance = 12.0f;
    ASSERT_TRUE(engine->SetObjectParams(&distance));
    EXPECT_EQ(4u, Log().CallsTo(kSlotSetObjectParams).size());
    vz::reduce::CObjectParametersReduceObject stored;
    engine->GetObjectParams(&stored);
    EXPECT_EQ(12.0f, stored.distance) << "the record is stored even when nothing is sent";

    // A new calibration makes the next parameters go out again, equal or not.
    auto record = SampleRecord(2);
    ASSERT_TRUE(engine->SetBroadCal(0, &record));
    ASSERT_TRUE(engine->SetObjectParams(&params));
    EXPECT_EQ(8u, Log().CallsTo(kSlotSetObjectParams).size());
}

TEST_F(EngineTest, ZeroFactorsAreSentAsOne) {
    auto params = Params(0.0f, 293.15f, 293.15f, 0.0f);
    ASSERT_TRUE(engine->SetObjectParams(&params));
    const fake::CalCall last = Log().calls.back();
    ASSERT_EQ(kSlotSetObjectParams, last.slot);
    EXPECT_EQ(1.0, last.numbers[0]);
    EXPECT_EQ(1.0, last.numbers[2]);
}

TEST_F(EngineTest, AFailedObjectParamsCallIsRetriedInFull) {
    auto params = Params(0.9f, 290.0f, 295.0f, 1.0f);
    ASSERT_TRUE(engine->isAvailable());
    Fail(kSlotSetObjectParams, S_OK, FALSE);
    EXPECT_FALSE(engine->SetObjectParams(&params));
    EXPECT_EQ(1u, Log().CallsTo(kSlotSetObjectParams).size()) << "must stop at the first failure";
    vz::reduce::CObjectParametersReduceObject stored;
    engine->GetObjectParams(&stored);
    EXPECT_EQ(0.0f, stored.objTempA) << "a failed call must not store the record";

    Heal(kSlotSetObjectParams);
    EXPECT_TRUE(engine->SetObjectParams(&params));
    EXPECT_EQ(5u, Log().CallsTo(kSlotSetObjectParams).size());
}

// An engine assigned another's shares its state; its own former state is abandoned, and only one
// of the two may be destroyed, so the assigned one never is.
TEST_F(EngineTest, AnAssignedEngineSharesTheOthersState) {
    auto params = Params(0.9f, 290.0f, 295.0f, 1.0f);
    ASSERT_TRUE(engine->SetObjectParams(&params));
    auto* assigned = new vz::CBroadCal;
    *assigned = *engine;
    vz::reduce::CObjectParametersReduceObject stored;
    assigned->GetObjectParams(&stored);
    EXPECT_EQ(290.0f, stored.objTempA);
    params.objTempA = 280.0f;
    ASSERT_TRUE(assigned->SetObjectParams(&params));
    engine->GetObjectParams(&stored);
    EXPECT_EQ(280.0f, stored.objTempA);
}

} // namespace
} // namespace engine_test
