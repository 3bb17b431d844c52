#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace tamrin {

// Releases a handle with the call that its kind needs.
template <auto kRelease>
struct Release {
    template <typename Handle>
    void operator()(Handle* handle) const {
        kRelease(handle);
    }
};

template <typename Handle, auto kRelease>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, Release<kRelease>>;

using OwnedHandle = Owned<HANDLE, CloseHandle>;
using OwnedSearch = Owned<HANDLE, FindClose>;
using OwnedFont = Owned<HFONT, DeleteObject>;
using OwnedMenu = Owned<HMENU, DestroyMenu>;
using OwnedAccelerators = Owned<HACCEL, DestroyAcceleratorTable>;

// The handle of a call that answers INVALID_HANDLE_VALUE on failure; null then.
inline OwnedHandle OwnFile(HANDLE handle) {
    return OwnedHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace tamrin
