#include "host_object.h"

#include "version_setting.h"

namespace camsim {

HostObject::HostObject() : mVersion(ReadConfiguredServerVersion()) {}

HRESULT HostObject::GetServerVersion(ULONG* major, ULONG* minor, ULONG* build) {
    if (major == nullptr || minor == nullptr || build == nullptr) {
        return E_POINTER;
    }
    *major = mVersion.major;
    *minor = mVersion.minor;
    *build = mVersion.build;
    return S_OK;
}

} // namespace camsim
