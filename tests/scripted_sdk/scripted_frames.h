// scripted_frames.h - the frames of an open camera, filled when the test says so
#pragma once

#include "pxnc/skeleton/frame_book.h"
#include "pxnc/skeleton/function_ref.h"
#include "tests/scripted_sdk/scripted_model.h"

#include <cstdint>
#include <vector>

namespace scripted {

/// What a frame is filled with.
struct Filling {
    std::int32_t status = PxnFrameStatusComplete;
    std::uint64_t frameId = 0;
    std::uint8_t byte = 0;
};

/// Shared by the handles of a camera and its streams. Frames are named by the index in their
/// context, which is kept since the module may free a frame that is still announced.
class ScriptedFrames final : public skeleton::FrameBook {
public:
    explicit ScriptedFrames(std::size_t indexOfCamera);

    PxnError StartCapture() override;
    PxnError EndCapture() override;
    PxnError Wait(const PxnFrame* frame, std::uint32_t timeoutMs) override;

    /// Fills a frame that was queued with a callback and calls that on the calling thread; false
    /// when there is none. `onTaken` is called before, with the lock held.
    bool Deliver(std::uint64_t index, const Filling& filling,
                 skeleton::FunctionRef<void()> onTaken);
    /// Ends the wait for a frame that was queued without a callback; false when there is none.
    bool Complete(std::uint64_t index, PxnError code, const Filling& filling);

    std::size_t IndexOfCamera() const { return camera; }
    /// Fills the queued frames, which stay queued.
    void WriteQueued(const Filling& filling);
    std::vector<std::uint64_t> AnnouncedFrames() const;
    /// Null when there is no such frame, announced or queued.
    PxnFrame* FrameOf(std::uint64_t index) const;
    std::vector<std::uint64_t> QueuedFrames() const;

protected:
    Rules CurrentRules() const override;
    PxnError OnAnnounced(Slot& slot, const PxnFrame& announced) override REQUIRES(mutex);
    void OnQueued(Slot& slot) override REQUIRES(mutex);

private:
    struct Note {
        std::uint64_t index = 0;
        bool isAnnounced = false; // else only queued
    };

    static std::uint64_t IndexOf(const Slot& slot);
    Note& NoteOf(Slot& slot) REQUIRES(mutex);
    /// Takes the first frame of the queue for which `matches`, or null.
    SlotPointer Take(skeleton::FunctionRef<bool(const Slot&)> matches) REQUIRES(mutex);
    void Write(const Slot& slot, const Filling& filling) const;

    const std::size_t camera;
    std::vector<SlotPointer> known GUARDED_BY(mutex); // in the order in which the SDK saw them
};

} // namespace scripted
