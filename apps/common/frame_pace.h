// frame_pace.h - keeps a camera that can wait from being faster than the program
#pragma once

#include "platform/condition.h"
#include "platform/mutex.h"

#include <cstdint>
#include <deque>

/// Holds the SDK's thread inside the callback of a frame until another frame can be filled without
/// writing over one that the program has not released: the module gives a buffer back to the camera
/// at once, whatever the host holds. Only for an SDK that sends no frame while a callback runs.
class FramePace {
public:
    /// An acquisition with so many buffers begins. With one buffer no frame waits.
    void Begin(std::uint64_t buffers);
    /// From now on no frame waits. Any thread.
    void End();

    // ---- on the frames' thread ----

    /// A frame of any status has come: waits until the program is far enough.
    void Await();
    /// The program can take the frame.
    void HandedOver();

    // ---- on the taker's thread ----

    /// The program needs the oldest of these frames no longer.
    void Released();

private:
    platform::Mutex mutex;
    platform::Condition changed;
    bool isOn GUARDED_BY(mutex) = false;
    std::uint64_t buffers GUARDED_BY(mutex) = 0;
    std::uint64_t count GUARDED_BY(mutex) = 0;        // frames of any status
    std::deque<std::uint64_t> held GUARDED_BY(mutex); // numbers of those not released
};
