// camera_identity.h - which camera was chosen, and which was opened
#pragma once

#include "platform/mutex.h"

#include <cstdint>
#include <string>

namespace pyxen {

/// The extended identifiers of two cameras: the one that configuration or the user chose, and the
/// one that was opened last. Opening a camera also chooses it.
///
/// Any thread: discovery events on SDK threads ask for the opened camera at any time.
class CameraIdentity {
public:
    /// Stores the chosen camera; false when out of memory, the former choice is then kept.
    bool Select(const char* id);
    /// Empty when none was chosen. Throws std::bad_alloc.
    std::string GetSelected() const;
    /// True if `key` is the CameraKey of the chosen camera.
    bool IsSelected(std::uint32_t key) const;

    /// Stores the camera that is being opened as the opened and the chosen one. Null counts as
    /// empty.
    void Open(const char* id);
    /// Empty until the first opening; closing the camera keeps it. Throws std::bad_alloc, also when
    /// out of memory at the opening.
    std::string GetOpened() const;
    /// No camera counts as opened any more.
    void ForgetOpened();

private:
    mutable platform::Mutex uniqueIdMutex; // never held while anything else is called
    std::string selectedUniqueId GUARDED_BY(uniqueIdMutex);
    std::string openedCameraId GUARDED_BY(uniqueIdMutex);
    bool openedIsLost GUARDED_BY(uniqueIdMutex) = false; // out of memory at the opening
};

} // namespace pyxen
