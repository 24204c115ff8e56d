// COstrelCal against an in-process fake: reference counting, the count's clamp at zero and the
// release of the library's COM apartment.
#include <ostrel.h>

#include <objbase.h>

#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "apartment.h"
#include "calibration_objects.h"
#include "fake_calibration.h"
#include "module_state.h"

namespace {

// The test thread holds its own apartment (the fake's class object needs one); the library then
// joins it and must leave exactly once.
class CalibrationHandle : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        server = std::make_unique<fake::FakeCalibrationServer>();
    }
    void TearDown() override {
        server.reset();
        CoUninitialize();
        EXPECT_FALSE(ThreadHasApartment()) << "the library left its apartment entered";
        EXPECT_EQ(0, gCalRefs);
        EXPECT_FALSE(gComInitialized);
    }

    fake::FakeCalibration& Object(size_t i) { return *server->Objects().at(i); }

    std::unique_ptr<fake::FakeCalibrationServer> server;
};

TEST_F(CalibrationHandle, EachGetMakesANewObjectAndCopiesShareIt) {
    COstrelCal cal = GetOstrelCal();
    ASSERT_TRUE(cal);
    EXPECT_TRUE(cal != 0);
    COstrelCal second = GetOstrelCal();
    COstrelCal empty;
    ASSERT_EQ(2u, server->Objects().size()) << "every call must create a new object";
    {
        COstrelCal copy(cal);
        EXPECT_EQ(2u, Object(0).References());
        EXPECT_EQ(3, gCalRefs);
    }
    EXPECT_EQ(1u, Object(0).References());
    EXPECT_EQ(2, gCalRefs);
    // Comparisons with any number but 0 answer false both ways, empty or not.
    for (COstrelCal* handle : {&cal, &empty}) {
        EXPECT_FALSE(*handle == 7);
        EXPECT_FALSE(*handle != 7);
    }
}

TEST_F(CalibrationHandle, AssignmentTakesTheNewObjectAndDropsTheOld) {
    COstrelCal a = GetOstrelCal();
    COstrelCal b = GetOstrelCal();
    a = b;
    EXPECT_EQ(0u, Object(0).References()) << "a's former object was not released";
    EXPECT_EQ(2u, Object(1).References());
    COstrelCal& alias = a;
    a = alias;
    EXPECT_EQ(2u, Object(1).References()) << "self-assignment changed the count";
    EXPECT_EQ(2, gCalRefs);

    a = 7;
    EXPECT_TRUE(a) << "assigning a number other than 0 must do nothing";
    a = 0;
    EXPECT_FALSE(a);
    EXPECT_TRUE(a == 0);
    EXPECT_EQ(1u, Object(1).References());
    b.Release();
    b.Release();
    EXPECT_FALSE(b);
    EXPECT_EQ(0u, Object(1).References());
    EXPECT_EQ(0, gCalRefs);
}

TEST_F(CalibrationHandle, DroppingMoreReferencesThanCountedNeverGoesBelowZero) {
    IOsCalibration* raw = CreateOstrelCal();
    ASSERT_NE(nullptr, raw);
    raw->AddRef(); // a reference the library never counted
    DropOstrelCal(raw);
    DropOstrelCal(raw);
    EXPECT_EQ(0, gCalRefs);

    // The count still works after the clamp: one handle counts one.
    COstrelCal cal = GetOstrelCal();
    EXPECT_EQ(1, gCalRefs);
}

// The last calibration reference leaves the apartment once, unless a connection still lives.
TEST_F(CalibrationHandle, TheLastReferenceLeavesTheApartmentOnce) {
    COstrelCal cal = GetOstrelCal();
    COstrelCal copy = cal;
    copy.Release();
    EXPECT_TRUE(gComInitialized) << "a reference is still held";
    gHostRefs = 1;
    cal.Release();
    EXPECT_TRUE(gComInitialized) << "the connection still needs the apartment";
    gHostRefs = 0;

    // The next calibration reference to go releases it.
    GetOstrelCal().Release();
    EXPECT_FALSE(gComInitialized);
    // The library joined the test's apartment; leaving once must leave the test's entry in place.
    EXPECT_TRUE(ThreadHasApartment());
}

// An empty handle tries again on each use, and keeps the object it gets at last.
TEST_F(CalibrationHandle, AServerThatRefusesGivesAnEmptyHandleUntilItAccepts) {
    server->RefuseCreation(true);
    COstrelCal cal = GetOstrelCal();
    EXPECT_FALSE(cal);
    EXPECT_FALSE(cal.Get());
    EXPECT_EQ(0, gCalRefs);
    // The apartment entered for the attempt stays until a reference is dropped.
    EXPECT_TRUE(gComInitialized);

    server->RefuseCreation(false);
    EXPECT_TRUE(cal.Get());
    IOsCalibration* object = cal.operator->();
    EXPECT_EQ(S_OK, cal->CalIsReady());
    EXPECT_EQ(object, cal.operator->()) << "the handle must cache its object";
    EXPECT_EQ(1u, server->Objects().size());
    cal.Release();
    EXPECT_FALSE(gComInitialized);
}

// On a thread already in the multithreaded apartment the library can't enter its own.
TEST(CalibrationApartment, AThreadInTheMultithreadedApartmentGetsAnEmptyHandle) {
    ASSERT_FALSE(gComInitialized);
    bool empty = false;
    std::string calFailure, hostFailure;
    std::thread worker([&] {
        ASSERT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        COstrelCal cal = GetOstrelCal();
        empty = !cal;
        calFailure = GetOstrelFailure();
        EXPECT_FALSE(GetOstrel());
        hostFailure = GetOstrelFailure();
        CoUninitialize();
    });
    worker.join();
    EXPECT_TRUE(empty);
    // RPC_E_CHANGED_MODE, then the system's text for it.
    const std::string expected =
        "CoInitializeEx of a single-threaded apartment failed: HRESULT 0x80010106";
    EXPECT_EQ(calFailure.substr(0, expected.size()), expected);
    EXPECT_EQ(hostFailure.substr(0, expected.size()), expected);
    EXPECT_FALSE(gComInitialized);
}

} // namespace
