// The calibration engine's private state: per preset a server calibration object, the factory
// record, a LUT living in a shared-memory view, and its status bytes.
#pragma once

#include <ostrel.h>

#include <memory>

#include <unique_resource.h>

namespace vz {

struct BroadCalState {
    BroadCalState();
    // Releases the shared buffers and, preset by preset, the calibration objects.
    ~BroadCalState();
    BroadCalState(const BroadCalState&) = delete;
    BroadCalState& operator=(const BroadCalState&) = delete;

    owners::UniqueBstr countsBufferName;
    owners::UniqueBstr tempBufferName[kPresetCount];
    owners::UniqueHandle countsMapping;
    owners::UniqueHandle tempMapping[kPresetCount];
    owners::UniqueView<unsigned short> countsView;
    // The LUT is the mapped view the server writes into; there is no copy.
    owners::UniqueView<float> lutOutput[kPresetCount];
    std::unique_ptr<unsigned char[]> lutStatus[kPresetCount];
    bool lutDirty[kPresetCount];
    bool serviceReady = false;
    bool serviceTried = false;
    bool buffersReady = false;
    bool buffersTried = false;
    COstrelCal calibration[kPresetCount];
    reduce::CQuilloFactoryCalReduceObject factoryCal[kPresetCount];
    reduce::CObjectParametersReduceObject objectParams;
    bool activePresets[kPresetCount] = {false, false, false, false};
    bool objectParamsSent = false;
    ETempType lutTempType = eCelsius;
};

} // namespace vz
