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
    bool Reset(std::uint64_t count);

    Arrival Add(std::uint64_t index);
    /// Hands out the newest waiting buffer; the older ones are lost. False when none waits.
    bool TakeNewest(std::uint64_t& index);
    /// Hands out the oldest waiting buffer. False when none waits.
    bool TakeOldest(std::uint64_t& index);
    /// Takes back a buffer that the host holds, or that waits and that the host does not want.
    /// False for any other.
    bool Release(std::uint64_t index);
    /// Images that were lost since the last Reset.
    std::uint64_t LostCount();

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

    enum class State : std::uint8_t { kIdle, kWaiting, kHeld };

    // The waiting buffers are linked by their indices, so that one in the middle leaves at once.
    struct Slot {
        State state = State::kIdle;
        std::uint32_t older = kNone;
        std::uint32_t newer = kNone;
    };

    void AppendNewest(std::uint32_t index) REQUIRES(mutex);
    void Unlink(std::uint32_t index) REQUIRES(mutex);

    platform::Mutex mutex;
    std::vector<Slot> slots GUARDED_BY(mutex);
    std::uint32_t oldest GUARDED_BY(mutex) = kNone;
    std::uint32_t newest GUARDED_BY(mutex) = kNone;
    std::uint64_t lost GUARDED_BY(mutex) = 0;
};
