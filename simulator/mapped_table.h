// A client's named file mapping, opened and mapped for the length of one call.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>

#include <unique_resource.h>

namespace camsim {

class MappedTable {
public:
    // Empty when no mapping has that name, it cannot be mapped with `viewAccess`
    // (FILE_MAP_READ or FILE_MAP_WRITE), or it is shorter than `bytes`.
    static std::optional<MappedTable> Open(const wchar_t* name, std::size_t bytes,
                                           DWORD viewAccess);

    void* Data() const { return mView.get(); }

private:
    MappedTable(owners::UniqueHandle mapping, owners::UniqueView<void> view)
        : mMapping(std::move(mapping)), mView(std::move(view)) {}

    owners::UniqueHandle mMapping;
    owners::UniqueView<void> mView;
};

} // namespace camsim
