// The test controls every simulator object answers besides its server interface.
#pragma once

#include <camsim_control.h>

namespace camsim {

// ICamSimControl's methods; IUnknown is the object's own.
class SimulatorControl : public ICamSimControl {
public:
    HRESULT STDMETHODCALLTYPE PostEvent(ULONGLONG value) override;
    HRESULT STDMETHODCALLTYPE ProcessId(ULONG* pid) override;
    HRESULT STDMETHODCALLTYPE SetFault(ULONG slot, LONG mode) override;
    HRESULT STDMETHODCALLTYPE SetFaultAfter(ULONG slot, LONG mode, ULONG passes) override;

protected:
    ~SimulatorControl() = default;
};

} // namespace camsim
