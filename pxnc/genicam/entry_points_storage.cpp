// entry_points_storage.cpp - settings files and chunk data
#include "platform/text.h"
#include "pxnc/genicam/chunk_access.h"
#include "pxnc/genicam/entry_point.h"
#include "pxnc/genicam/settings_file.h"

using namespace genicam;

PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return EnterModule(handle, [&](Library&, const Module& module) -> PxnError {
        if (path == nullptr || settings != nullptr) {
            return PxnErrBadParameter;
        }
        return size == 0 ? SaveSettings(module, platform::WideToNarrow(path))
                         : PxnError{PxnErrStructSize};
    });
}

PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t* path, const void* settings,
                                  uint32_t size) {
    return EnterModule(handle, [&](Library& library, const Module& module) -> PxnError {
        if (path == nullptr || settings != nullptr) {
            return PxnErrBadParameter;
        }
        if (size != 0) {
            return PxnErrStructSize;
        }
        const PxnError result = LoadSettings(module, platform::WideToNarrow(path));
        library.Changes().ReportWrite(handle, {});
        for (const PxnHandle dependent : module.Dependents()) {
            library.Changes().ReportWrite(dependent, {});
        }
        return result;
    });
}

PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                     void* userContext) {
    return Enter([&](Library& library) -> PxnError {
        if (frame == nullptr || callback == nullptr) {
            return PxnErrBadParameter;
        }
        return AccessChunks(library, frame, callback, userContext);
    });
}
