// small_icon.cpp - an icon of the module at the system's small-icon size
#include "ui/windows/small_icon.h"

namespace pyxen {

SmallIcon LoadIconOfSize(UINT resourceId, int size) {
    return SmallIcon(
        static_cast<HICON>(::LoadImage(AfxGetResourceHandle(), MAKEINTRESOURCE(resourceId),
                                       IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
}

SmallIcon LoadSmallIcon(UINT resourceId) {
    return LoadIconOfSize(resourceId, ::GetSystemMetrics(SM_CXSMICON));
}

} // namespace pyxen
