// Whether the calling thread is in a COM apartment, whoever entered it.
#pragma once

#include <objbase.h>

inline bool ThreadHasApartment() {
    APTTYPE type;
    APTTYPEQUALIFIER qualifier;
    return SUCCEEDED(CoGetApartmentType(&type, &qualifier));
}
