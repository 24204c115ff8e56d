/* Vtable slots of the server's interfaces that the library calls, counted from QueryInterface = 0.
   slot_check.c proves each against the interfaces as the IDL declares them. */
#pragma once

enum OstrelHostSlot { kSlotGetServerVersion = 219 };

enum OsCalibrationSlot {
    kSlotSetAux = 8,
    kSlotComputeLut = 9,
    kSlotSetObjectParams = 10,
    kSlotTempToCounts = 13,
    kSlotIsReady = 14,
    kSlotLoadFactoryKind2 = 15,
    kSlotSetIntegrationTime = 16,
    kSlotLoadFactory = 17,
    kSlotIntegrationTimeAt = 18
};
