// frame_journal.h - the frames of an acquisition in the order of their arrival
#pragma once

#include "apps/common/frame_stamp.h"
#include "mivora/module_services.h"
#include "platform/mutex.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// A frame that the program has taken from the host's ring, and those missing before it.
struct TakenFrame {
    FrameStamp stamp;
    std::vector<FrameGap> before; ///< in order
    std::uint64_t number = 0;     ///< among the frames of any status since the start, from 1
    std::uint64_t handedOver = 0; ///< monotonic time at which the module handed it over
    bool isOverwritten = false;   ///< the camera has filled the buffer again already
};

/// Finds out for each frame that is taken from the ring which frame it is and what has become of
/// those between it and the one taken before. Parts of a frame that come again behind others, as
/// they may when packets are lost, are not counted twice. The frames' thread and the taker's may
/// call at the same time.
class FrameJournal {
public:
    /// An acquisition begins; forgets all frames. While no frames arrive.
    void Begin(std::size_t buffers);

    // ---- on the frames' thread ----

    /// A frame of any status has come, as the services report it.
    void Received(const MV_FRAME_INFO& frame, std::uint64_t now);
    /// Without services: so many frames have come in error and were not handed over.
    void ReceivedInError(std::uint64_t count, std::uint64_t now);
    /// A complete frame has been handed over; without services it has not been reported before.
    void HandedOver(std::uint64_t bufferIndex, std::uint64_t now);

    // ---- on the taker's thread ----

    /// The ring has given out this buffer, whose hand-over has been noted. False if it has none.
    bool Take(std::uint64_t bufferIndex, TakenFrame& taken);
    /// Adds all frames that have come and were not taken.
    void TakeRest(std::vector<FrameGap>& gaps);

    /// Frames of any status after the one with this number. Any thread.
    std::uint64_t CountAfter(std::uint64_t number) const;

private:
    struct Entry {
        FrameStamp stamp;
        std::uint64_t number = 0;
        std::uint64_t buffer = kNoBuffer; // set when the frame has been handed over
        std::uint64_t handedOver = 0;
        bool isComplete = false;
        bool isLost = false; // overwritten the frame that the taker held
    };
    static constexpr std::uint64_t kNoBuffer = ~std::uint64_t{0};

    std::size_t FindTaken(std::uint64_t bufferIndex, bool& isOverwritten) REQUIRES(mutex);
    bool IsWaiting(const Entry& entry) const REQUIRES(mutex);
    void GiveUp(const Entry& entry, std::vector<FrameGap>& gaps) REQUIRES(mutex);
    bool FindGap(const FrameStamp& stamp, std::vector<FrameGap>& gaps) REQUIRES(mutex);
    void RemoveFirst(std::size_t count) REQUIRES(mutex);

    mutable platform::Mutex mutex;
    std::vector<Entry> entries GUARDED_BY(mutex); // from `first` on: come and not accounted for
    std::size_t first GUARDED_BY(mutex) = 0;
    std::vector<std::uint64_t> newest GUARDED_BY(mutex); // number of the newest frame, by buffer
    std::uint64_t count GUARDED_BY(mutex) = 0;           // frames of any status
    std::optional<std::uint64_t> lastId GUARDED_BY(mutex);
    std::uint64_t unnumbered GUARDED_BY(mutex) = 0; // frames since that one
};
