/* sdk_user.c - the camera SDK's interface is plain C */
#include <pxnc.h>
#include <pxnc_entries.h>

#define ONE(name) +1

int main(void) {
    return sizeof(PxnCameraInfo) == 80 && PXN_ENTRIES(ONE) == PXN_ENTRY_COUNT ? 0 : 1;
}
