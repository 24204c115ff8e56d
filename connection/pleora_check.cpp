#include "pleora_check.h"

#include <vz/array.h>

bool PleoraCompatible(DWORD major, DWORD minor, DWORD cyCamLib) {
    constexpr DWORD kVersion3_1 = 0x00030001;
    constexpr DWORD kVersion3_3 = 0x00030003;
    return cyCamLib == 0 || (major == 5 && minor == 90 && cyCamLib == kVersion3_1) ||
           (major == 5 && (minor == 91 || minor == 92) && cyCamLib == kVersion3_3);
}

VS_FIXEDFILEINFO ReadCyCamLibVersion() {
    VS_FIXEDFILEINFO version{};
    wchar_t path[1024];
    wchar_t* filePart = nullptr;
    if (SearchPathW(nullptr, L"CyCamLib.dll", nullptr, 1024, path, &filePart) == 0) {
        return version;
    }
    const DWORD size = GetFileVersionInfoSizeW(path, nullptr);
    vz::TArray<unsigned char> block(5);
    if (!block.SetCount(size) || !GetFileVersionInfoW(path, 0, size, block.GetData())) {
        return version;
    }
    void* record = nullptr;
    UINT length = 0;
    if (VerQueryValueW(block.GetData(), L"\\", &record, &length) && length >= sizeof(version)) {
        version = *static_cast<const VS_FIXEDFILEINFO*>(record);
    }
    return version;
}
