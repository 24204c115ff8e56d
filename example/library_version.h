// The version of the ostrel.dll this process loaded, read from that module's own version
// resource: the build the host actually runs, which may not be the one it was compiled against.
#pragma once

#include <optional>
#include <string>

namespace convert {

struct LoadedLibrary {
    std::string version; // "major.minor.patch"
    std::string file;    // in UTF-8
};

std::optional<LoadedLibrary> LoadedOstrel();

} // namespace convert
