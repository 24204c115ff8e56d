#include "mapped_table.h"

namespace camsim {

std::optional<MappedTable> MappedTable::Open(const wchar_t* name, std::size_t bytes,
                                             DWORD viewAccess) {
    if (name == nullptr || *name == L'\0') {
        return std::nullopt;
    }
    owners::UniqueHandle mapping(OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE, FALSE, name));
    if (!mapping) {
        return std::nullopt;
    }
    owners::UniqueView<void> view(MapViewOfFile(mapping.get(), viewAccess, 0, 0, 0));
    if (!view) {
        return std::nullopt;
    }
    // A whole-mapping view spans the mapping's size rounded up to pages, so a region shorter
    // than `bytes` means the client's mapping is too small.
    MEMORY_BASIC_INFORMATION region{};
    if (VirtualQuery(view.get(), &region, sizeof(region)) == 0 || region.RegionSize < bytes) {
        return std::nullopt;
    }
    return MappedTable(std::move(mapping), std::move(view));
}

} // namespace camsim
