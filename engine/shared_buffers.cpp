#include <cstdlib>
#include <optional>
#include <string>

#include "broadcal_steps.h"

namespace vz {
namespace {

constexpr wchar_t kCountsBufferBase[] = L"Calorvue<->Ostrel CountsConvBuffer";
constexpr wchar_t kTempBufferBase[] = L"Calorvue<->Ostrel TempConvBuffer";
constexpr int kNameAttempts = 10000;

// A name no mapping holds yet: the base name, with one more random number appended for every
// name found taken.
std::optional<std::wstring> UnusedMappingName(const wchar_t* base) {
    std::wstring name = base;
    for (int attempts = 0; attempts < kNameAttempts; ++attempts) {
        owners::UniqueHandle taken(
            OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, name.c_str()));
        if (!taken) {
            return name;
        }
        name += std::to_wstring(std::rand());
    }
    return std::nullopt;
}

// Creates a named read-write mapping of count elements on the paging file and maps all of it.
template <class T>
bool CreateSharedBuffer(const wchar_t* base, owners::UniqueHandle& mapping,
                        owners::UniqueView<T>& view, owners::UniqueBstr& name) {
    const std::optional<std::wstring> unused = UnusedMappingName(base);
    if (!unused) {
        return false;
    }
    mapping.reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                     kLutSize * sizeof(T), unused->c_str()));
    // The call reports failure with null; an invalid handle is refused all the same.
    if (!mapping || mapping.get() == INVALID_HANDLE_VALUE) {
        return false;
    }
    view.reset(
        static_cast<T*>(MapViewOfFile(mapping.get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, 0)));
    if (!view) {
        return false;
    }
    name.reset(SysAllocString(unused->c_str()));
    return static_cast<bool>(name);
}

} // namespace

bool EnsureBuffers(BroadCalState& state) {
    return TryOnce(state.buffersReady, state.buffersTried, [&state] {
        if (!CreateSharedBuffer(kCountsBufferBase, state.countsMapping, state.countsView,
                                state.countsBufferName)) {
            return false;
        }
        for (unsigned p = 0; p < kPresetCount; ++p) {
            if (!CreateSharedBuffer(kTempBufferBase, state.tempMapping[p], state.lutOutput[p],
                                    state.tempBufferName[p])) {
                return false;
            }
            state.lutStatus[p] = std::make_unique<unsigned char[]>(kLutSize);
        }
        unsigned short* counts = state.countsView.get();
        for (std::uint32_t i = 0; i < kLutSize; ++i) {
            counts[i] = static_cast<unsigned short>(i);
        }
        return true;
    });
}

} // namespace vz
