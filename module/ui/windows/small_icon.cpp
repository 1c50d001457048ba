// small_icon.cpp - an icon of the module at the system's small-icon size
#include "ui/windows/small_icon.h"

SmallIcon LoadSmallIcon(UINT resourceId) {
    return SmallIcon(static_cast<HICON>(::LoadImage(
        AfxGetResourceHandle(), MAKEINTRESOURCE(resourceId), IMAGE_ICON,
        ::GetSystemMetrics(SM_CXSMICON), ::GetSystemMetrics(SM_CYSMICON), LR_DEFAULTCOLOR)));
}
