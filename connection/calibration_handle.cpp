#include <ostrel.h>

#include "calibration_objects.h"
#include "module_state.h"

COstrelCal::COstrelCal() : mCal(nullptr) {}

COstrelCal::COstrelCal(IOsCalibration* adopted) : mCal(adopted) {}

COstrelCal::COstrelCal(const COstrelCal& other) : mCal(other.mCal) {
    if (mCal != nullptr) {
        ++gCalRefs;
        mCal->AddRef();
    }
}

COstrelCal::~COstrelCal() {
    if (mCal != nullptr) {
        DropOstrelCal(mCal);
    }
}

COstrelCal& COstrelCal::operator=(const COstrelCal& other) {
    // Take the new reference before dropping the old one, so self-assignment keeps the object.
    IOsCalibration* previous = mCal;
    if (other.mCal != nullptr) {
        ++gCalRefs;
        other.mCal->AddRef();
    }
    mCal = other.mCal;
    if (previous != nullptr) {
        DropOstrelCal(previous);
    }
    return *this;
}

IOsCalibration* COstrelCal::operator->() {
    if (mCal == nullptr) {
        mCal = CreateOstrelCal();
    }
    return mCal;
}

bool COstrelCal::Get() {
    return operator->() != nullptr;
}

void COstrelCal::Release() {
    if (mCal != nullptr) {
        DropOstrelCal(mCal);
    }
    mCal = nullptr;
}

COstrelCal& COstrelCal::operator=(int v) {
    if (v == 0) {
        Release();
    }
    return *this;
}

bool COstrelCal::operator==(int v) const {
    return v == 0 && mCal == nullptr;
}

bool COstrelCal::operator!=(int v) const {
    return v == 0 && mCal != nullptr;
}

COstrelCal::operator bool() const {
    return mCal != nullptr;
}

COstrelCal GetOstrelCal() {
    return COstrelCal(CreateOstrelCal());
}
