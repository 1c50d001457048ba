// frame_holder.h - the newest frame, for all who look at it
#pragma once

#include "apps/common/host_image.h"
#include "platform/condition.h"
#include "platform/mutex.h"

#include <cstdint>
#include <memory>
#include <vector>

/// An image as the grabber delivered it; immutable once published.
struct ServedFrame {
    ImageLayout layout;
    std::vector<std::uint8_t> bytes;
    std::uint64_t number = 0; ///< of this program, from 1
};

using FramePointer = std::shared_ptr<const ServedFrame>;

/// Passes frames from the one thread that takes them to any number of readers. The lock is held
/// for the exchange of a pointer only, and memory of frames that nobody reads is used again.
class FrameHolder {
public:
    // ---- on the taker's thread ----

    /// False when nobody has looked for a while and there is a frame for the next who does: then
    /// copying the image is not worth its time.
    bool IsWanted(std::uint64_t now) const;
    /// Bytes to copy the next image to.
    std::vector<std::uint8_t> TakeBuffer();
    void Publish(const ImageLayout& layout, std::vector<std::uint8_t> bytes, std::uint64_t now);
    /// The camera was closed: there is no newest frame.
    void Clear();

    // ---- any thread ----

    /// Null when there is none.
    FramePointer Newest();
    /// Waits up to `timeoutMs` milliseconds for a frame of a greater number; null without one.
    FramePointer WaitNewer(std::uint64_t number, std::uint32_t timeoutMs);

private:
    struct Pool; // of buffers, which frames may outlive the holder with

    const std::shared_ptr<Pool> pool = MakePool();
    static std::shared_ptr<Pool> MakePool();
    static void Recycle(const std::weak_ptr<Pool>& pool, ServedFrame* frame);

    mutable platform::Mutex mutex;
    platform::Condition changed;
    FramePointer newest GUARDED_BY(mutex);
    std::uint64_t count GUARDED_BY(mutex) = 0;
    std::uint64_t waiters GUARDED_BY(mutex) = 0;
    std::uint64_t lastAsked GUARDED_BY(mutex) = 0;
    std::uint64_t lastPublished GUARDED_BY(mutex) = 0;
};
