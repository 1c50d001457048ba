// frame_set.h - frames of a check and what becomes of them
#pragma once

#include "pxnc/conformance/session.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace conformance {

/// Frames with memory of their own, whose content shows whether somebody has written to it. Frame i
/// belongs to stream i modulo the number of streams. The camera's handle stands for its stream when
/// only one is used. Used by one thread, apart from the callback.
class FrameSet {
public:
    FrameSet(Session& checkedSession, Findings& checkFindings, std::size_t count);
    FrameSet(Session& checkedSession, Findings& checkFindings, std::size_t count,
             std::vector<PxnHandle> streams);
    /// Stops the camera, and takes the frames back.
    ~FrameSet();
    FrameSet(const FrameSet&) = delete;
    FrameSet& operator=(const FrameSet&) = delete;

    std::size_t Size() const { return frames.size(); }
    PxnFrame& At(std::size_t index) { return frames[index]; }

    // These end the check when they fail.
    void Announce();
    /// With the callback of this object.
    void QueueAll();
    /// Starts capture and camera.
    void Start();
    void StartCapture();

    /// Notes a failure.
    void EndCapture();
    PxnError Announce(std::size_t index);
    /// The camera is asked to stop; frames under way may still come.
    void StopCamera();
    /// With the callback of this object.
    PxnError Queue(std::size_t index);
    /// Without a callback.
    PxnError QueueForWait(std::size_t index);
    PxnError Flush();
    PxnError RevokeAll();
    /// The camera is closed, and all frames with it.
    void Forget() { isForgotten = true; }

    /// Run by the callback for the frame's index, before it counts as having returned. What it
    /// refers to must outlive this object.
    std::function<void(std::size_t)> onFrame;

    // What the callbacks have seen.
    /// Waits until `count` callbacks have returned. False when that takes longer.
    bool WaitForReturns(std::uint64_t count, std::uint32_t timeoutMs);
    /// The same for a time in which every camera should have sent so many; ends the check.
    void RequireReturns(std::uint64_t count);
    std::uint64_t Returns() const { return returns; }
    bool IsInCallback() const { return running > 0; }
    /// How often a callback began while another one ran.
    std::uint64_t Overlaps() const { return overlaps; }
    /// Callbacks for frames that were not queued with one, or had come back already.
    std::uint64_t Strays() const { return strays; }
    /// Callbacks with other handles or a changed context.
    std::uint64_t Strangers() const { return strangers; }

    /// True when nobody has written to the buffer or the record since they were made or `Renew`ed.
    bool IsUntouched(std::size_t index) const;
    /// The same for the buffer alone.
    bool IsBufferUntouched(std::size_t index) const;
    /// True when nobody has written before or behind the buffer.
    bool AreMarginsUntouched(std::size_t index) const;
    void Renew(std::size_t index);

private:
    static void PXN_CALL OnFrame(PxnHandle camera, PxnHandle stream, PxnFrame* frame);
    void Returned(PxnHandle camera, PxnHandle stream, const PxnFrame& frame, std::size_t index);
    PxnHandle HandleOf(std::size_t index) const { return handles[index % handles.size()]; }

    Session& session;
    const SdkFunctions& sdk;
    Findings& findings;
    const PxnHandle camera;
    const std::vector<PxnHandle> handles;
    const std::vector<PxnHandle> knownStreams;
    bool isForgotten = false;
    std::vector<std::vector<std::uint8_t>> memory;
    std::vector<PxnFrame> frames;
    std::vector<PxnFrame> copies;            // as they were before somebody could write
    std::vector<std::atomic<bool>> isQueued; // with the callback
    std::atomic<int> running = 0;
    std::atomic<std::uint64_t> returns = 0;
    std::atomic<std::uint64_t> overlaps = 0;
    std::atomic<std::uint64_t> strays = 0;
    std::atomic<std::uint64_t> strangers = 0;
};

} // namespace conformance
