// Uses each kind of export the SDK offers (functions, classes, the engine, the event singleton
// and its data), so a missing header, import or DLL fails the build or the run.
#include <ostrel.h>

#include <cstdio>

int main() {
    COstrel host = GetOstrel();
    unsigned long major = 0, minor = 0, build = 0;
    if (!host || !GetOstrelVersion(major, minor, build)) {
        std::puts("host: no connection to the camera server");
        return 1;
    }
    { COstrelLock lock; }
    COstrelCal cal = GetOstrelCal();
    vz::CBroadCal engine;
    if (!cal || FAILED(cal->CalIsReady()) || !engine.isAvailable()) {
        std::puts("host: no calibration object");
        return 1;
    }
    COstrelEvents* events = gOstrelEvents;
    if (events != gOstrelEvents.GetInstance() || events->mEvent.GetCount() != 0) {
        std::puts("host: the event singleton is not shared with the library");
        return 1;
    }
    std::printf("host: server %lu.%lu.%lu, calibration object answered\n", major, minor, build);
    return 0;
}
