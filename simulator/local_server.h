// Server mode: serving both classes to COM clients.
#pragma once

namespace camsim {

enum class Lifetime {
    // As COM starts it (-Embedding): until the last object or lock is released, or until no
    // client has created anything within a short while after start.
    UntilLastRelease,
    // Started by hand (/Serve): until the process is ended, so that clients never start one.
    UntilEnded,
};

// Serves both classes; returns the process exit code.
int RunLocalServer(Lifetime lifetime);

} // namespace camsim
