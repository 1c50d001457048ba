// entry_points_library.cpp - version, startup and shutdown
#include "pxnc/genicam/entry_point.h"

using namespace genicam;

PxnError PXN_CALL PxnVersionQuery(PxnVersionInfo* info, uint32_t size) {
    if (info == nullptr) {
        return PxnErrBadParameter;
    }
    if (size != sizeof *info) {
        return PxnErrStructSize;
    }
    *info = {1, 0, 0};
    return PxnErrSuccess;
}

PxnError PXN_CALL PxnStartup(const wchar_t* configPath) {
    try {
        return Library::Start(configPath);
    } catch (const std::bad_alloc&) {
        return PxnErrResources;
    } catch (...) {
        return PxnErrInternalFault;
    }
}

void PXN_CALL PxnShutdown(void) {
    Library::Stop();
}
