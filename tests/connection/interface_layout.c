/* The server interfaces as declared must put every method the library calls at its slot. */
#include <stddef.h>

#include <ostrel_server.h>

#define SLOT(vtbl, method, slot)                                                                   \
    _Static_assert(offsetof(vtbl, method) == (slot) * sizeof(void*), #method " is not at its "     \
                                                                             "slot")

SLOT(IOstrelHostVtbl, AddRef, 1);
SLOT(IOstrelHostVtbl, Release, 2);
SLOT(IOstrelHostVtbl, GetServerVersion, 219);
SLOT(IOsCalibrationVtbl, CalSetAux, 8);
SLOT(IOsCalibrationVtbl, CalComputeLUT, 9);
SLOT(IOsCalibrationVtbl, CalSetObjectParams, 10);
SLOT(IOsCalibrationVtbl, CalTempToCounts, 13);
SLOT(IOsCalibrationVtbl, CalIsReady, 14);
SLOT(IOsCalibrationVtbl, CalLoadFactoryKind2, 15);
SLOT(IOsCalibrationVtbl, CalSetIntegrationTime, 16);
SLOT(IOsCalibrationVtbl, CalLoadFactory, 17);
SLOT(IOsCalibrationVtbl, CalIntegrationTimeAt, 18);
