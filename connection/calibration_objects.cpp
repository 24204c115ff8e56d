#include "calibration_objects.h"

#include <objbase.h>

#include "com_apartment.h"
#include "failure_note.h"
#include "module_state.h"

IOsCalibration* CreateOstrelCal() {
    failure_note::Clear();
    if (!EnsureComApartment()) {
        return nullptr;
    }
    IOsCalibration* cal = nullptr;
    const HRESULT hr = CoCreateInstance(CLSID_OsCalibration, nullptr, CLSCTX_LOCAL_SERVER,
                                        IID_IOsCalibration, reinterpret_cast<void**>(&cal));
    if (FAILED(hr)) {
        failure_note::WriteFailedCall("CoCreateInstance of a calibration object", hr);
        return nullptr;
    }
    ++gCalRefs;
    return cal;
}

void DropOstrelCal(IOsCalibration* cal) {
    cal->Release();
    if (--gCalRefs > 0) {
        return;
    }
    gCalRefs = 0;
    LeaveComApartmentIfUnused();
}
