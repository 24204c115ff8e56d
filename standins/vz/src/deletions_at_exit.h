#pragma once

namespace vz::Private {

// Runs every deletion registered with DeleteAtExit, in their order; called as vz.dll unloads.
void RunDeletionsAtExit();

} // namespace vz::Private
