// Uses each kind of export the SDK offers, so a missing header, import or DLL fails the build or
// the run.
#include <ostrel.h>

#include <cstdio>

int main() {
    unsigned long major = 0, minor = 0, build = 0;
    const bool connected = GetOstrelVersion(major, minor, build);
    {
        COstrelLock lock;
    }
    COstrelCal cal = GetOstrelCal();
    if (!cal || FAILED(cal->CalIsReady())) {
        std::puts("host: no calibration object");
        return 1;
    }
    std::printf("host: calibration object answered (connected before: %s)\n",
                connected ? "yes" : "no");
    return 0;
}
