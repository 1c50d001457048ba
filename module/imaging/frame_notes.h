// frame_notes.h - what is known of the frame received last into each buffer
#pragma once

#include "mivora/module_services.h"
#include "pxnc.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace pyxen {

/// What the SDK states about a frame, as hosts get it. `current` when the host's image is that of
/// the frame.
MV_FRAME_INFO DescribeFrame(const PxnFrame& frame, std::uint64_t bufferIndex,
                            std::uint64_t received, bool current);

/// The frame received last into one buffer.
///
/// One thread at a time writes; any thread may read meanwhile. A reader never waits for a writer
/// that has been interrupted: what is new is written beside what is valid, and readers begin again
/// only when something new has become valid under their hands.
class FrameNote {
public:
    /// Nothing has been received.
    void Clear();
    /// The frame has been received. `received` and `current` as for DescribeFrame.
    void Store(const PxnFrame& frame, std::uint64_t received, bool current);
    /// The image changes from here on.
    void BeginChange();
    /// The image may change once its frame has been queued, which the caller does next: what makes
    /// the frame the SDK's puts this before all that follows. Returns what Restore takes.
    std::uint64_t Leave();
    /// The frame has not been queued after all since Leave has returned `before`.
    void Restore(std::uint64_t before);
    /// All members but `size` and `bufferIndex`; zeros while nothing has been received.
    void Load(MV_FRAME_INFO& info) const;

private:
    static constexpr std::size_t kWords = 8;
    static constexpr std::uint64_t kPictureMask = 3;
    static constexpr std::uint64_t kStep = 4;

    static bool IsCurrent(std::uint64_t state) {
        return (state & kPictureMask) == MV_PICTURE_CURRENT;
    }
    static std::uint64_t Gone(std::uint64_t state) {
        return (state & ~kPictureMask) + MV_PICTURE_GONE;
    }

    // Two places for what the SDK has stated, valid by turns.
    std::array<std::array<std::atomic<std::uint64_t>, kWords>, 2> places{};
    // How many times something has become valid, and in the lowest bits the state of the picture
    // (MV_FRAME_PICTURE). The lowest bit of the number is the index of the valid place.
    std::atomic<std::uint64_t> state{MV_PICTURE_NONE};
};

/// The notes of all buffers. Preparing excludes other writers; any thread may read at any time.
class FrameNotes {
public:
    static constexpr std::size_t kMost = 100;

    /// There are `count` buffers now, at most kMost, and nothing has been received.
    void Prepare(std::size_t count);
    /// Null without such a buffer.
    FrameNote* Find(std::uint64_t index) { return index < count ? &notes[index] : nullptr; }
    /// False without such a buffer; `size` stays.
    bool Load(std::uint64_t index, MV_FRAME_INFO& info) const;

private:
    std::array<FrameNote, kMost> notes;
    std::atomic<std::size_t> count{0};
};

} // namespace pyxen
