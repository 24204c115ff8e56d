#include <ostrel.h>

#include "module_state.h"

bool GetOstrelVersion(unsigned long& major, unsigned long& minor, unsigned long& build) {
    if (gOstrelHost == nullptr) {
        return false;
    }
    major = gServerMajor;
    minor = gServerMinor;
    build = gServerBuild;
    return true;
}
