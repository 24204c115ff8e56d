#include "calibration_objects.h"

#include <objbase.h>

#include "com_apartment.h"
#include "module_state.h"

IOsCalibration* CreateOstrelCal() {
    if (!EnsureComApartment()) {
        return nullptr;
    }
    IOsCalibration* cal = nullptr;
    if (FAILED(CoCreateInstance(CLSID_OsCalibration, nullptr, CLSCTX_LOCAL_SERVER,
                                IID_IOsCalibration, reinterpret_cast<void**>(&cal)))) {
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
