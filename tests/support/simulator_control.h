// The simulator's test controls, reached through any handle to one of its objects.
#pragma once

#include <camsim_control.h>
#include <wrl/client.h>

namespace simulator {

// Null when the handle holds no object of the simulator's. The control holds a reference to the
// object: release it before the handle that gave it, whose apartment it lives in.
template <class Handle> Microsoft::WRL::ComPtr<ICamSimControl> ControlOf(Handle& handle) {
    Microsoft::WRL::ComPtr<ICamSimControl> control;
    if (handle) {
        handle->QueryInterface(IID_PPV_ARGS(&control));
    }
    return control;
}

} // namespace simulator
