/* Every method the library calls sits at the slot server_slots.h gives it. Compiled as C, where
   the generated header declares the vtables as structures. */
#include <stddef.h>

#include <ostrel_server.h>

#include "server_slots.h"

#define SLOT(vtbl, method, slot)                                                                   \
    _Static_assert(offsetof(vtbl, method) == (slot) * sizeof(void*), #method " is not at its "     \
                                                                             "slot")

SLOT(IOstrelHostVtbl, AddRef, 1);
SLOT(IOstrelHostVtbl, Release, 2);
SLOT(IOstrelHostVtbl, GetServerVersion, kSlotGetServerVersion);
SLOT(IOsCalibrationVtbl, CalSetAux, kSlotSetAux);
SLOT(IOsCalibrationVtbl, CalComputeLUT, kSlotComputeLut);
SLOT(IOsCalibrationVtbl, CalSetObjectParams, kSlotSetObjectParams);
SLOT(IOsCalibrationVtbl, CalTempToCounts, kSlotTempToCounts);
SLOT(IOsCalibrationVtbl, CalIsReady, kSlotIsReady);
SLOT(IOsCalibrationVtbl, CalLoadFactoryKind2, kSlotLoadFactoryKind2);
SLOT(IOsCalibrationVtbl, CalSetIntegrationTime, kSlotSetIntegrationTime);
SLOT(IOsCalibrationVtbl, CalLoadFactory, kSlotLoadFactory);
SLOT(IOsCalibrationVtbl, CalIntegrationTimeAt, kSlotIntegrationTimeAt);
