// The fuzzer's input as a file, since the readers take file names: rewritten for every input.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace fuzz {

class InputFile {
public:
    explicit InputFile(const char* name)
        : mPath(std::filesystem::temp_directory_path() /
                ("ostrel-fuzz-" + std::to_string(getpid()) + "-" + name)) {}
    ~InputFile() {
        std::error_code ignored;
        std::filesystem::remove(mPath, ignored);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    const std::filesystem::path& Write(const std::uint8_t* data, std::size_t size) {
        std::ofstream(mPath, std::ios::binary | std::ios::trunc)
            .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        return mPath;
    }

private:
    std::filesystem::path mPath;
};

// Stops the fuzzer on a reader that answered success with a result its own rules forbid.
inline void Require(bool condition) {
    if (!condition) {
        __builtin_trap();
    }
}

} // namespace fuzz
