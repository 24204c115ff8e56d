// The library's COM apartment: entered on demand, left when nothing of the server is held.
#pragma once

// Enters a single-threaded apartment unless the library already did. False when COM can't be
// initialised on this thread (for example, it is already in the multithreaded apartment) and the
// library holds no apartment from earlier.
bool EnsureComApartment();

// Leaves the library's apartment once no connection and no calibration reference is left.
// Runs on whichever thread drops the last reference.
void LeaveComApartmentIfUnused();
