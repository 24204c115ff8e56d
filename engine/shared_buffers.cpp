#include <cstdlib>
#include <string>

#include <windows.h>

#include "broadcal_steps.h"

namespace vz {
namespace {

constexpr wchar_t kCountsBufferBase[] = L"Calorvue<->Ostrel CountsConvBuffer";
constexpr wchar_t kTempBufferBase[] = L"Calorvue<->Ostrel TempConvBuffer";
constexpr int kNameAttempts = 10000;

// The C runtime keeps one unseeded sequence per thread, so without a seed every thread and every
// process would try the same numbers in the same order and meet each other's names.
void SeedThisThreadOnce() {
    thread_local bool seeded = false;
    if (!seeded) {
        std::srand(GetCurrentThreadId() * 2654435761u ^ GetCurrentProcessId() * 40503u ^
                   GetTickCount());
        seeded = true;
    }
}

// Names follow the base name with one more random number appended for every name found taken.
class MappingNames {
public:
    explicit MappingNames(const wchar_t* base) : mName(base) { SeedThisThreadOnce(); }
    const std::wstring& Current() const { return mName; }
    // The next name; false when the attempts are used up.
    bool Next() {
        mName += std::to_wstring(std::rand());
        return ++mAttempts < kNameAttempts;
    }

private:
    std::wstring mName;
    int mAttempts = 0;
};

// Creates a named read-write mapping of count elements on the paging file and maps all of it.
template <class T>
bool CreateSharedBuffer(const wchar_t* base, owners::UniqueHandle& mapping,
                        owners::UniqueView<T>& view, owners::UniqueBstr& name) {
    MappingNames names(base);
    for (;;) {
        const owners::UniqueHandle taken(
            OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, names.Current().c_str()));
        if (taken) {
            if (!names.Next()) {
                return false;
            }
            continue;
        }
        mapping.reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                         kLutSize * sizeof(T), names.Current().c_str()));
        const DWORD why = GetLastError();
        // The call reports failure with null; an invalid handle is refused all the same.
        const bool created = mapping && mapping.get() != INVALID_HANDLE_VALUE;
        // Another engine, here or in another process, may have taken the name since we looked:
        // then the call opens its mapping, which must never become ours.
        if (created && why != ERROR_ALREADY_EXISTS) {
            break;
        }
        mapping.reset();
        // A name held by another kind of object, or by a mapping we may not open, is taken
        // as surely as by a mapping we can open.
        const bool nameTaken = why == ERROR_ALREADY_EXISTS || why == ERROR_INVALID_HANDLE ||
                               why == ERROR_ACCESS_DENIED;
        if (!nameTaken || !names.Next()) {
            return false;
        }
    }
    view.reset(
        static_cast<T*>(MapViewOfFile(mapping.get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, 0)));
    if (!view) {
        return false;
    }
    name.reset(SysAllocString(names.Current().c_str()));
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
