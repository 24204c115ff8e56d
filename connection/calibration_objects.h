// Creation and release of server calibration objects, shared by COstrelCal and the engine.
#pragma once

#include <ostrel_server.h>

// A new calibration object carrying one reference for the caller, or null. Every call creates a
// new object; a caller that keeps the raw pointer drops it with DropOstrelCal.
IOsCalibration* CreateOstrelCal();

// Releases one calibration reference and leaves the apartment once nothing is held.
void DropOstrelCal(IOsCalibration* cal);
