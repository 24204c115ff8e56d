#include "test_files.h"

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#include <stb_image.h>

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

namespace testfiles {

ScratchFolder::ScratchFolder(std::wstring_view name)
    : mPath(std::filesystem::temp_directory_path() / L"ostrel-example-tests" /
            (std::wstring(name) + L"-" + std::to_wstring(GetCurrentProcessId()))) {
    std::filesystem::remove_all(mPath);
    std::filesystem::create_directories(mPath);
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}

void WriteBytes(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

std::string ReadBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<std::wstring> FolderContents(const std::filesystem::path& folder) {
    std::vector<std::wstring> names;
    std::error_code code;
    for (const auto& entry : std::filesystem::directory_iterator(folder, code)) {
        names.push_back(entry.path().filename().wstring());
    }
    std::ranges::sort(names);
    return names;
}

void WritePgm(const std::filesystem::path& file, std::uint32_t width, std::uint32_t height,
              const std::vector<std::uint16_t>& samples, unsigned maxval) {
    std::string bytes = "P5\n" + std::to_string(width) + " " + std::to_string(height) + "\n" +
                        std::to_string(maxval) + "\n";
    for (const std::uint16_t sample : samples) {
        if (maxval > 255) {
            bytes += static_cast<char>(sample >> 8);
        }
        bytes += static_cast<char>(sample & 0xFF);
    }
    WriteBytes(file, bytes);
}

std::vector<float> ReadPfm(const std::filesystem::path& file, std::uint32_t& width,
                           std::uint32_t& height) {
    const std::string bytes = ReadBytes(file);
    std::istringstream header(bytes);
    std::string magic, scale;
    header >> magic >> width >> height >> scale;
    const std::size_t at = static_cast<std::size_t>(header.tellg()) + 1;
    const std::size_t count = std::size_t{width} * height;
    if (!header || magic != "Pf" || scale != "-1.0" || bytes.size() - at != count * sizeof(float)) {
        width = height = 0;
        return {};
    }
    std::vector<float> values(count);
    for (std::uint32_t stored = 0; stored < height; ++stored) {
        std::memcpy(&values[std::size_t{height - 1 - stored} * width],
                    bytes.data() + at + std::size_t{stored} * width * sizeof(float),
                    width * sizeof(float));
    }
    return values;
}

PngSize ReadPngSize(const std::filesystem::path& file) {
    const std::string bytes = ReadBytes(file);
    int width = 0, height = 0, channels = 0;
    if (!stbi_info_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()),
                               static_cast<int>(bytes.size()), &width, &height, &channels)) {
        return {};
    }
    return {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)};
}

} // namespace testfiles
