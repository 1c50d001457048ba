// handle_table.h - the handles that hosts hold, and what they refer to
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <unordered_map>

namespace skeleton {

class FrameBook;
class Module;

/// What a handle refers to.
struct Target {
    std::shared_ptr<Module> module; ///< never null
    /// The frames of a camera or stream handle; else null.
    std::shared_ptr<FrameBook> frames = nullptr;
    /// Set once the camera has vanished; null for modules that belong to no camera. Only what gives
    /// back frames and registrations, and closing, is left then.
    std::shared_ptr<const std::atomic<bool>> vanished = nullptr;
    bool isCamera = false;  ///< from PxnCameraOpen
    bool isWritable = true; ///< false for what was opened for reading

    /// True once the camera has gone.
    bool HasVanished() const { return vanished && *vanished; }
};

/// Any thread. No number is handed out twice, so a stale handle never refers to another module.
class HandleTable {
public:
    /// A number for a module that is added later.
    PxnHandle Reserve() EXCLUDES(mutex);
    /// `handle` is reserved, or PXN_SYSTEM_HANDLE.
    void Put(PxnHandle handle, Target target) EXCLUDES(mutex);
    /// Reserve and Put in one.
    PxnHandle Add(Target target) EXCLUDES(mutex);
    /// False when the handle is not there (any more).
    bool Find(PxnHandle handle, Target& target) const EXCLUDES(mutex);
    /// Makes a handle invalid; false when it is so already.
    bool Remove(PxnHandle handle) EXCLUDES(mutex);
    /// Makes all handles invalid.
    void Clear() EXCLUDES(mutex);

private:
    mutable platform::Mutex mutex;
    std::unordered_map<PxnHandle, Target> targets GUARDED_BY(mutex);
    std::uintptr_t last GUARDED_BY(mutex) = 0x2000000000000000;
};

} // namespace skeleton
