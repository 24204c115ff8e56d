// The server version configured for the simulator in the registry.
#pragma once

#include "server_version.h"

namespace camsim {

// HKCU\Software\CamSim, value ServerVersion (REG_SZ "major.minor.build"); the default version
// when the value is absent, of another type, or malformed.
ServerVersion ReadConfiguredServerVersion();

} // namespace camsim
