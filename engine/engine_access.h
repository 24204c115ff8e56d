// What the C interface needs of an engine beyond its exported members: whether a conversion
// would reach the server, and a range query that reports every failed call and leaves the preset
// as it found it.
#pragma once

#include <ostrel.h>

namespace vz {

// Whether converting through the preset needs no server call: its table is current.
bool IsLutCurrent(CBroadCal& engine, unsigned char preset);
// Whether the per-pixel and keyed conversions refresh the preset's table (SetActivePresets).
bool IsPresetActive(CBroadCal& engine, unsigned char preset);

// The temperature range (Celsius) the preset covers at intTime, false when any server call of
// the query fails. Afterwards the preset's object is loaded again with the stored record and,
// when they were sent, the stored object parameters, and its table is rebuilt on next use;
// `restored` says whether that reload succeeded (when not, the object may hold anything).
bool TempRangeRestoringPreset(CBroadCal& engine, unsigned char preset, unsigned long intTime,
                              float& minTemp, float& maxTemp, bool& restored);

} // namespace vz
