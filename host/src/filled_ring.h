// filled_ring.h - filled frame buffers between the camera and the host
#pragma once

#include "platform/mutex.h"

#include <cstdint>
#include <vector>

/// What became of a buffer that was filled.
enum class Arrival {
    kQueued,        ///< it waits as the newest
    kOverwritten,   ///< it waited already: its older image is lost
    kHeldByHost,    ///< the host holds it: the image it should have had is lost
    kUnknownBuffer, ///< there is no such buffer
};

/// Keeps which frame buffers wait for the host, oldest to newest, and which the host holds. Every
/// operation takes the same short time and allocates nothing but Reset. Any thread.
class FilledRing {
public:
    /// Forgets everything and makes room for `count` buffers. False, with room for none, when
    /// there are too many or memory is out.
    bool Reset(uint64_t count);

    Arrival Add(uint64_t index);
    /// Hands out the newest waiting buffer; the older ones are lost. False when none waits.
    bool TakeNewest(uint64_t& index);
    /// Hands out the oldest waiting buffer. False when none waits.
    bool TakeOldest(uint64_t& index);
    /// Takes back a buffer that the host holds, or that waits and that the host does not want.
    /// False for any other.
    bool Release(uint64_t index);
    /// Images that were lost since the last Reset.
    uint64_t LostCount();

private:
    static constexpr uint32_t kNone = 0xFFFFFFFFu;

    enum class State : uint8_t { kIdle, kWaiting, kHeld };

    // The waiting buffers are linked by their indices, so that one in the middle leaves at once.
    struct Slot {
        State state = State::kIdle;
        uint32_t older = kNone;
        uint32_t newer = kNone;
    };

    void AppendNewest(uint32_t index) REQUIRES(mutex);
    void Unlink(uint32_t index) REQUIRES(mutex);

    platform::Mutex mutex;
    std::vector<Slot> slots GUARDED_BY(mutex);
    uint32_t oldest GUARDED_BY(mutex) = kNone;
    uint32_t newest GUARDED_BY(mutex) = kNone;
    uint64_t lost GUARDED_BY(mutex) = 0;
};
