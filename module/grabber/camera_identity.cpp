// camera_identity.cpp - which camera was chosen, and which was opened
#include "grabber/camera_identity.h"

#include "grabber/camera_key.h"
#include "sdk/no_throw.h"

#include <new>

namespace pyxen {

bool CameraIdentity::Select(const char* id) {
    return NoThrow(false, [&] {
        std::string copy = id;
        const platform::MutexLock lock(uniqueIdMutex);
        selectedUniqueId.swap(copy);
        return true;
    });
}

std::string CameraIdentity::GetSelected() const {
    const platform::MutexLock lock(uniqueIdMutex);
    return selectedUniqueId;
}

bool CameraIdentity::IsSelected(std::uint32_t key) const {
    const platform::MutexLock lock(uniqueIdMutex);
    return key == CameraKey(selectedUniqueId.c_str());
}

void CameraIdentity::Open(const char* id) {
    const char* const known = id ? id : "";
    Select(known);
    const bool stored = NoThrow(false, [&] {
        std::string copy = known;
        const platform::MutexLock lock(uniqueIdMutex);
        openedCameraId.swap(copy);
        openedIsLost = false;
        return true;
    });
    if (!stored) {
        const platform::MutexLock lock(uniqueIdMutex);
        openedIsLost = true;
    }
}

std::string CameraIdentity::GetOpened() const {
    const platform::MutexLock lock(uniqueIdMutex);
    if (openedIsLost) {
        throw std::bad_alloc();
    }
    return openedCameraId;
}

void CameraIdentity::ForgetOpened() {
    const platform::MutexLock lock(uniqueIdMutex);
    openedCameraId.clear();
    openedIsLost = false;
}

} // namespace pyxen
