#include <vz/reduce/factory_calibration.h>
#include <vz/reduce/object_parameters.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>

namespace {

using vz::reduce::CObjectParametersReduceObject;
using vz::reduce::CQuilloFactoryCalReduceObject;

// Gives every field a different non-zero value, through the fields' names.
void Fill(CQuilloFactoryCalReduceObject& record) {
    record.recordVersion = 3;
    record.cameraSerial = 41234;
    record.calKind = 2;
    for (int i = 0; i < 6; ++i) {
        record.calCoef[i] = 0.25f * static_cast<float>(i + 1);
    }
    record.calCoefExtra = -1.5f;
    record.countsLow = 1000;
    record.countsHigh = 60000;
    record.tempMinK = 253.15f;
    record.tempMaxK = 423.15f;
    record.calAux = 7.0f;
    record.integrationTime = 250.9f;
    record.flags = 1;
}

void Fill(CObjectParametersReduceObject& record) {
    record.recordVersion = 1;
    record.emissivity = 0.95f;
    record.distance = 2.0f;
    record.objFactorA = 0.8f;
    record.objTempA = 293.15f;
    record.objTempB = 300.0f;
    record.objFactorB = 1.2f;
    record.spanHighK = 400.0f;
}

template <class Record> std::uint32_t Word(const Record& record, unsigned index) {
    std::uint32_t word;
    std::memcpy(&word, reinterpret_cast<const unsigned char*>(&record) + 4 * index, 4);
    return word;
}

template <class Record> class Records : public testing::Test {};
using RecordTypes = testing::Types<CQuilloFactoryCalReduceObject, CObjectParametersReduceObject>;
TYPED_TEST_SUITE(Records, RecordTypes);

TYPED_TEST(Records, DefaultConstructionZeroesEveryWord) {
    alignas(TypeParam) unsigned char storage[sizeof(TypeParam)];
    std::memset(storage, 0xA5, sizeof storage);

    const auto* record = new (storage) TypeParam;

    for (unsigned i = 0; i < sizeof(TypeParam) / 4; ++i) {
        EXPECT_EQ(Word(*record, i), 0u) << "word " << i;
    }
    record->~TypeParam();
}

TYPED_TEST(Records, CopiesTakeEveryWord) {
    TypeParam original;
    Fill(original);

    const TypeParam copied(original);
    TypeParam assigned;
    assigned = original;

    EXPECT_EQ(std::memcmp(&copied, &original, sizeof original), 0);
    EXPECT_EQ(std::memcmp(&assigned, &original, sizeof original), 0);
}

} // namespace
