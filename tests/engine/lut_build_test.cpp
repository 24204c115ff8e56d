// LUT rebuilds through shared memory, with the server played by a fake that writes the tables.
#include <unique_resource.h>

#include "engine_fixture.h"

namespace engine_test {
namespace {

const std::wstring kCountsBase = L"Calorvue<->Ostrel CountsConvBuffer";
const std::wstring kTempBase = L"Calorvue<->Ostrel TempConvBuffer";

// A rising table: 20 °C at the calibrated low count 1000, one hundredth of a degree per count.
float Rising(int i) {
    return 20.0f + 0.01f * (i - 1000);
}

class LutBuild : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        ServeTable(Rising);
        auto record = SampleRecord(2);
        for (unsigned char p = 0; p < 4; ++p) {
            ASSERT_TRUE(engine->SetBroadCal(p, &record));
        }
    }
};

TEST_F(LutBuild, TheServerFillsTheEnginesOwnNamedBuffers) {
    std::vector<unsigned short> countsSeen;
    Log().computeLut = [&](const std::wstring& counts, const std::wstring& temps) {
        const owners::UniqueHandle mapping(OpenFileMappingW(FILE_MAP_READ, FALSE, counts.c_str()));
        ASSERT_TRUE(mapping);
        const owners::UniqueView<unsigned short> view(
            static_cast<unsigned short*>(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0)));
        ASSERT_TRUE(view);
        countsSeen.assign(view.get(), view.get() + 65536);
        WriteTable(temps, Rising);
    };
    ASSERT_TRUE(engine->UpdateLUT(0));
    ASSERT_TRUE(engine->UpdateLUT(3));

    const auto calls = Log().CallsTo(kSlotComputeLut);
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ((std::vector<double>{65536, 1, 65535}), calls[0].numbers);
    EXPECT_EQ(kCountsBase, calls[0].names[0]);
    EXPECT_EQ(kTempBase, calls[0].names[1]) << "preset 0 takes the plain name";
    EXPECT_EQ(kCountsBase, calls[1].names[0]);
    // Preset 3 finds the plain name taken by preset 0's mapping and appends a number to it.
    const std::wstring& name = calls[1].names[1];
    ASSERT_GT(name.size(), kTempBase.size()) << "each preset needs a buffer of its own";
    EXPECT_EQ(0u, name.rfind(kTempBase, 0));
    EXPECT_EQ(std::wstring::npos, name.find_first_not_of(L"0123456789", kTempBase.size()));

    ASSERT_EQ(65536u, countsSeen.size());
    for (int i = 0; i < 65536; ++i) {
        ASSERT_EQ(i, countsSeen[i]);
    }
}

TEST_F(LutBuild, AFailedRebuildIsRetriedOnTheNextUse) {
    Fail(kSlotComputeLut, S_OK, FALSE);
    EXPECT_FALSE(engine->UpdateLUT(0));
    EXPECT_EQ(nullptr, engine->GetLUTOutput(0));
    EXPECT_EQ(nullptr, engine->GetLUTStatus(0));
    float temp = 0;
    EXPECT_FALSE(engine->CountsToTemp(0, 1000, &temp, nullptr, vz::eKelvin));
    EXPECT_EQ(0.0f, temp) << "a failed conversion must write nothing";
    Heal(kSlotComputeLut);
    ASSERT_NE(nullptr, engine->GetLUTOutput(0));
    EXPECT_EQ(5u, Log().CallsTo(kSlotComputeLut).size());
}

TEST_F(LutBuild, TablesAreBoundedMarkedAndHeldInTheLutUnit) {
    engine->setLUTTempType(vz::eKelvin);
    const float* lut = engine->GetLUTOutput(0);
    const unsigned char* status = engine->GetLUTStatus(0);
    ASSERT_NE(nullptr, lut);
    ASSERT_NE(nullptr, status);
    EXPECT_EQ(vz::eLUTValid, status[30000]);
    EXPECT_EQ(static_cast<float>(double(Rising(30000)) + 273.15), lut[30000]);
    // Far below the calibrated 20 °C the entries hold the low limit, 5 degrees below it.
    EXPECT_EQ(vz::eLUTBelow, status[0]);
    EXPECT_EQ(static_cast<float>(double(20.0f - 5.0f) + 273.15), lut[0]);
}

// Changing the unit or the object parameters rebuilds; a current table needs no server at all.
TEST_F(LutBuild, OnlyChangesMakeTablesDirty) {
    ASSERT_TRUE(engine->UpdateLUT(0));
    const size_t calls = CallCount();
    Fail(kSlotComputeLut);
    Fail(kSlotIsReady);
    engine->setLUTTempType(vz::eCelsius);
    EXPECT_TRUE(engine->UpdateLUT(0));
    EXPECT_EQ(calls, CallCount());
    Heal(kSlotComputeLut);
    Heal(kSlotIsReady);
    engine->setLUTTempType(vz::eFahrenheit);
    EXPECT_EQ(vz::eFahrenheit, engine->lutTempType());
    ASSERT_TRUE(engine->UpdateLUT(0));
    EXPECT_EQ(2u, Log().CallsTo(kSlotComputeLut).size());

    for (int round = 0; round < 2; ++round) {
        for (unsigned char p = 0; p < 4; ++p) {
            ASSERT_TRUE(engine->UpdateLUT(p));
        }
        vz::reduce::CObjectParametersReduceObject params;
        params.objFactorA = 0.9f;
        ASSERT_TRUE(engine->SetObjectParams(&params));
    }
    EXPECT_EQ(9u, Log().CallsTo(kSlotComputeLut).size())
        << "new object params make every preset dirty";
}

// Names held by other kinds of kernel objects are skipped like names held by mappings.
TEST_F(LutBuild, NamesHeldByOtherObjectsAreSkipped) {
    const owners::UniqueHandle countsSquatter(CreateMutexW(nullptr, FALSE, kCountsBase.c_str()));
    const owners::UniqueHandle tempSquatter(
        CreateEventW(nullptr, FALSE, FALSE, L"Calorvue<->Ostrel TempConvBuffer"));
    ASSERT_TRUE(countsSquatter && tempSquatter);
    ASSERT_TRUE(engine->UpdateLUT(0));
    const auto calls = Log().CallsTo(kSlotComputeLut);
    ASSERT_EQ(1u, calls.size());
    for (const std::wstring& name : calls[0].names) {
        EXPECT_NE(name.find_first_of(L"0123456789"), std::wstring::npos) << "a base name was kept";
    }
}

} // namespace
} // namespace engine_test
