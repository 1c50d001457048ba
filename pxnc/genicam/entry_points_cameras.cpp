// entry_points_cameras.cpp - camera lists, opening and closing
#include "pxnc/genicam/entry_point.h"

using namespace genicam;

PxnError PXN_CALL PxnCamerasList(PxnCameraInfo* list, uint32_t capacity, uint32_t* found,
                                 uint32_t size) {
    return Enter([&](Library& library) -> PxnError {
        return size == sizeof *list ? CopyList(library.Cameras().Present(), list, capacity, found)
                                    : PxnError{PxnErrStructSize};
    });
}

PxnError PXN_CALL PxnCameraInfoQueryByHandle(PxnHandle camera, PxnCameraInfo* info, uint32_t size) {
    return EnterModule(camera, [&](Library& library, const Module&) -> PxnError {
        if (info == nullptr) {
            return PxnErrBadParameter;
        }
        return size == sizeof *info ? library.Cameras().InfoOf(camera, *info)
                                    : PxnError{PxnErrStructSize};
    });
}

PxnError PXN_CALL PxnCameraInfoQuery(const char* id, PxnCameraInfo* info, uint32_t size) {
    return Enter([&](Library& library) -> PxnError {
        if (id == nullptr || info == nullptr) {
            return PxnErrBadParameter;
        }
        return size == sizeof *info ? library.Cameras().InfoOf(id, *info)
                                    : PxnError{PxnErrStructSize};
    });
}

PxnError PXN_CALL PxnCameraOpen(const char* id, uint32_t accessMode, PxnHandle* camera) {
    return Enter([&](Library& library) -> PxnError {
        if (id == nullptr || camera == nullptr ||
            (accessMode != PxnAccessModeFull && accessMode != PxnAccessModeRead)) {
            return PxnErrBadParameter;
        }
        return library.OpenCameraById(id, accessMode, *camera);
    });
}

PxnError PXN_CALL PxnCameraClose(PxnHandle camera) {
    return Enter([&](Library& library) { return library.CloseCamera(camera); });
}
