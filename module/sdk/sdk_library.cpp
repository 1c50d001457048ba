// sdk_library.cpp - who uses a loaded SDK library, and what it has not given back
#include "sdk/sdk_library.h"

#include "platform/shared_library.h"
#include "platform/static_mutex.h"
#include "sdk/callback_scope.h"
#include "sdk/invalidation_hub.h"
#include "sdk/pyxen_api_access.h"

#include <utility>

namespace pyxen {

namespace {

using CameraList = std::unique_ptr<CameraNote>;

// Without destructors: the SDK's threads may still run while the process ends.
constinit platform::StaticMutex sharedMutex; // not held while the SDK is called or memory is freed
SdkLibraryUse* uses GUARDED_BY(sharedMutex) = nullptr;
CameraNote* remembered GUARDED_BY(sharedMutex) = nullptr; // owned

void Push(CameraList& list, CameraList camera) {
    camera->next = std::move(list);
    list = std::move(camera);
}

CameraList Pop(CameraList& list) {
    CameraList first = std::move(list);
    if (first) {
        list = std::move(first->next);
    }
    return first;
}

// Moves the library's cameras out of the common list.
CameraList TakeCameras(const void* library) {
    const platform::StaticMutexLock lock(sharedMutex);
    CameraList all(std::exchange(remembered, nullptr));
    CameraList taken;
    CameraList others;
    while (CameraList camera = Pop(all)) {
        CameraList& list = camera->library == library ? taken : others;
        Push(list, std::move(camera));
    }
    remembered = others.release();
    return taken;
}

void GiveBack(CameraList camera) {
    if (camera->memory) {
        camera->memory->ComeBack();
    }
}

} // namespace

void SdkLibraryUse::Begin(void* usedLibrary) {
    const platform::StaticMutexLock lock(sharedMutex);
    library = usedLibrary;
    next = std::exchange(uses, this);
}

void SdkLibraryUse::End() {
    if (!library) {
        return;
    }
    bool isLast = true;
    {
        const platform::StaticMutexLock lock(sharedMutex);
        for (SdkLibraryUse** place = &uses; *place;) {
            if (*place == this) {
                *place = next;
                continue;
            }
            isLast = isLast && (*place)->library != library;
            place = &(*place)->next;
        }
    }
    const void* const used = std::exchange(library, nullptr);
    if (!isLast) {
        return;
    }
    for (CameraList cameras = TakeCameras(used); CameraList camera = Pop(cameras);) {
        GiveBack(std::move(camera));
    }
}

void RememberUnclosedCamera(std::unique_ptr<CameraNote> camera) {
    platform::KeepThisLibraryLoaded();
    const platform::StaticMutexLock lock(sharedMutex);
    camera->next.reset(remembered);
    remembered = camera.release();
}

void ForgetRegistrations(const CPyxenAPIAccess& api, const CameraNote& camera) {
    const std::shared_ptr<InvalidationHub>& hub = api.Invalidations();
    for (const PxnHandle module : camera.modules) {
        if (hub && module) {
            hub->Forget(module);
        }
    }
}

void ForgetReopenedCamera(const CPyxenAPIAccess& api, PxnHandle handle) {
    for (CameraList cameras = TakeCameras(api.GetLibraryHandle());
         CameraList camera = Pop(cameras);) {
        if (camera->handle == handle) {
            ForgetRegistrations(api, *camera);
            GiveBack(std::move(camera));
        } else {
            RememberUnclosedCamera(std::move(camera));
        }
    }
}

void CloseRememberedCameras(const CPyxenAPIAccess& api) {
    if (CallbackScope::IsInside()) {
        return;
    }
    for (CameraList cameras = TakeCameras(api.GetLibraryHandle());
         CameraList camera = Pop(cameras);) {
        const PxnError result = api.PxnCameraClose(camera->handle);
        // What the SDK does not know any more it has closed.
        if (result == PxnErrSuccess || result == PxnErrBadHandle) {
            ForgetRegistrations(api, *camera);
            GiveBack(std::move(camera));
        } else {
            RememberUnclosedCamera(std::move(camera));
        }
    }
}

} // namespace pyxen
