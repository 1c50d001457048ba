// handle_table.h - the handles that hosts hold, and what they stand for
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"

#include <cstdint>
#include <unordered_map>

namespace pxsim {

class Camera;
class Module;
class Stream;

/// What a handle stands for. Only camera handles and what hangs on an open camera have a camera.
struct HandleTarget {
    Module* module = nullptr;
    Camera* camera = nullptr;
    Stream* stream = nullptr; // the one that frames of this handle travel on
    bool writable = true;     // false for what was opened for reading
    bool isCamera = false;    // from PxnCameraOpen
    bool vanished = false;    // the camera was unplugged; only closing is left
};

/// Numbers are never given out twice, so a stale handle is always told from a live one.
class HandleTable {
public:
    PxnHandle Add(const HandleTarget& target) EXCLUDES(mutex);
    void AddSystem(Module* system) EXCLUDES(mutex);
    bool Find(PxnHandle handle, HandleTarget& target) const EXCLUDES(mutex);
    /// False when the handle was not there (any more).
    bool Remove(PxnHandle handle) EXCLUDES(mutex);
    void MarkVanished(PxnHandle handle) EXCLUDES(mutex);

private:
    mutable platform::Mutex mutex;
    std::unordered_map<PxnHandle, HandleTarget> targets GUARDED_BY(mutex);
    std::uintptr_t last GUARDED_BY(mutex) = 0x2000000000000000;
};

} // namespace pxsim
