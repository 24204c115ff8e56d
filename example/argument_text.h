// Command-line arguments as the UTF-8 the option parser reads, and back to file names, losing
// nothing: a lone surrogate, which a Windows file name may hold and UTF-8 can't, travels in its
// three-byte form (WTF-8), so every name comes back exactly as it was given.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace convert {

std::string ArgumentText(std::wstring_view argument);
std::filesystem::path ArgumentPath(std::string_view text);

} // namespace convert
