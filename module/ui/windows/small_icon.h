// small_icon.h - an icon of the module at the system's small-icon size
#pragma once

#include <afxwin.h>

#include <memory>
#include <type_traits>

namespace pyxen {

struct IconDestroyer {
    using pointer = HICON;
    void operator()(HICON icon) const { ::DestroyIcon(icon); }
};

/// Owns an icon and destroys it in the end.
using SmallIcon = std::unique_ptr<std::remove_pointer_t<HICON>, IconDestroyer>;

/// Loads an icon resource of the module in a size of so many pixels; null when there is none of
/// that number.
SmallIcon LoadIconOfSize(UINT resourceId, int size);
/// The same in the system's small-icon size.
SmallIcon LoadSmallIcon(UINT resourceId);

} // namespace pyxen
