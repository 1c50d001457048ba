// filled_ring.h - queue of filled frame buffers between camera and host
#pragma once

#include "platform/mutex.h"

#include <cstdint>
#include <vector>

/// Result of adding a filled buffer.
enum class Arrival {
    kQueued,        ///< the buffer is waiting as the newest one
    kOverwritten,   ///< it was already waiting; its previous image is lost
    kHeldByHost,    ///< the host holds the buffer; the new image is lost
    kUnknownBuffer, ///< there is no such buffer
};

/// Tracks which frame buffers wait for the host, from oldest to newest, and which the host holds.
/// Operations take constant time, TakeNewest for each buffer that it drops; only Reset allocates.
/// Any thread.
class FilledRing {
public:
    /// Resets the ring to `count` idle buffers, at most 65536. Returns false, with no buffers, if
    /// there are too many or when out of memory.
    bool Reset(std::uint64_t count);

    Arrival Add(std::uint64_t index);
    /// Takes the newest waiting buffer and drops the older ones. False if none is waiting.
    bool TakeNewest(std::uint64_t& index);
    /// Takes the oldest waiting buffer. False if none is waiting.
    bool TakeOldest(std::uint64_t& index);
    /// Makes a buffer idle that the host holds or that is waiting; false for any other.
    bool Release(std::uint64_t index);
    /// The number of images lost since the last Reset.
    std::uint64_t LostCount();

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

    enum class State : std::uint8_t { kIdle, kWaiting, kHeld };

    // Waiting buffers form a list linked by index, so that any of them can be removed at once.
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
