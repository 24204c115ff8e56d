// ostrel-convert: the example host. It reaches the camera server through ostrel.dll and checks
// that a calibration object answers.
#include <ostrel.h>

#include <cstdio>

int main() {
    COstrelCal calibration = GetOstrelCal();
    if (!calibration) {
        std::fputs("ostrel-convert: the camera server is not reachable (is it registered?)\n",
                   stderr);
        return 1;
    }
    if (FAILED(calibration->CalIsReady())) {
        std::fputs("ostrel-convert: the camera server's calibration object is not ready\n", stderr);
        return 1;
    }
    std::puts("The camera server's calibration object answered: ready.");
    return 0;
}
