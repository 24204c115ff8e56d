#include "batch_inputs.h"

#include <windows.h>

#include <algorithm>

#include <unique_resource.h>

#include "display_name.h"

namespace convert {
namespace {

bool EndsWithIgnoringCase(const std::wstring& text, std::wstring_view suffix) {
    return text.size() >= suffix.size() &&
           CompareStringOrdinal(text.data() + text.size() - suffix.size(),
                                static_cast<int>(suffix.size()), suffix.data(),
                                static_cast<int>(suffix.size()), TRUE) == CSTR_EQUAL;
}

bool IsWildcard(const std::filesystem::path& input) {
    return input.filename().native().find_first_of(L"*?") != std::wstring::npos;
}

// Not a status image this program wrote.
bool IsFrameName(const std::wstring& name) {
    return !EndsWithIgnoringCase(name, kStatusSuffix);
}

void ExpandWildcard(const std::filesystem::path& pattern,
                    std::vector<std::filesystem::path>& found) {
    WIN32_FIND_DATAW entry;
    const owners::UniqueFind find(FindFirstFileW(pattern.c_str(), &entry));
    if (!find) {
        return;
    }
    do {
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && IsFrameName(entry.cFileName)) {
            found.push_back(pattern.parent_path() / entry.cFileName);
        }
    } while (FindNextFileW(find.get(), &entry));
}

void ListFolder(const std::filesystem::path& folder, const std::wstring& extension,
                std::vector<std::filesystem::path>& found) {
    std::error_code code;
    for (const auto& entry : std::filesystem::directory_iterator(folder, code)) {
        const std::wstring name = entry.path().filename().native();
        if (entry.is_regular_file(code) && EndsWithIgnoringCase(name, extension) &&
            IsFrameName(name)) {
            found.push_back(entry.path());
        }
    }
}

} // namespace

bool ExpandInputs(const std::vector<std::filesystem::path>& inputs, const std::wstring& extension,
                  std::vector<std::filesystem::path>& files, std::string& error) {
    for (const std::filesystem::path& input : inputs) {
        std::vector<std::filesystem::path> found;
        const bool wildcard = IsWildcard(input);
        std::error_code code;
        if (wildcard) {
            ExpandWildcard(input, found);
        } else if (std::filesystem::is_directory(input, code)) {
            ListFolder(input, extension, found);
        } else if (std::filesystem::exists(input, code)) {
            files.push_back(input);
            continue;
        } else {
            // Before connecting to the server, which takes a while.
            error = formats::DisplayName(input) + ": no such file or folder";
            return false;
        }
        if (found.empty()) {
            error = formats::DisplayName(input) +
                    (wildcard ? ": no file matches"
                              : ": the folder holds no " + formats::Narrow(extension) + " file");
            return false;
        }
        std::ranges::sort(found);
        files.insert(files.end(), found.begin(), found.end());
    }
    return true;
}

} // namespace convert
