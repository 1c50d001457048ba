/* sdk_user.c - the camera SDK's interface is plain C */
#include <pxnc.h>

int main(void) {
    return sizeof(PxnCameraInfo) == 80 ? 0 : 1;
}
