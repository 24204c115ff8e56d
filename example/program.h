// ostrel-convert's whole run apart from its process: the command line in, what it prints on out
// and err, the exit code back.
#pragma once

#include <ostream>
#include <span>
#include <string>

namespace convert {

int Run(std::span<const std::wstring> arguments, std::ostream& out, std::ostream& err);

} // namespace convert
