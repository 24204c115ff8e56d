// The frame files a command line names: files as given, every file of the frame kind in a
// folder, and the files a wildcard matches (Windows hands programs wildcards unexpanded).
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace convert {

// extension: the frame kind's, such as L".pgm". Folders and wildcards skip the status images
// this program writes (NAME.status.pgm) and give their files in name order. False with a
// message naming the input when a folder or wildcard yields no file.
bool ExpandInputs(const std::vector<std::filesystem::path>& inputs, const std::wstring& extension,
                  std::vector<std::filesystem::path>& files, std::string& error);

// The suffix of the status images, which the folder and wildcard expansion leave out.
inline constexpr wchar_t kStatusSuffix[] = L".status.pgm";

} // namespace convert
