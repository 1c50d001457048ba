// frame_set.h - frames to announce and a record of what came into them
#pragma once

#include "tests/pxnc/genicam/sdk_library.h"

#include "platform/event.h"
#include "platform/mutex.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace genicam_test {

/// Frames with memory of their own. Their callback keeps a copy of every frame that comes and then
/// calls `onFrame`.
class FrameSet {
public:
    FrameSet(PxnHandle cameraHandle, std::size_t count, std::uint32_t bytes);
    /// Takes the memory back, also from a test that has failed in the middle.
    ~FrameSet();
    FrameSet(const FrameSet&) = delete;
    FrameSet& operator=(const FrameSet&) = delete;

    PxnFrame* At(std::size_t index) { return &frames[index]; }
    std::size_t Size() const { return frames.size(); }

    void Announce();
    /// Queues all frames with the callback.
    void Queue();
    PxnError Queue(std::size_t index);
    void StartAcquisition() const;
    /// Stops the acquisition, ends the capture, flushes and revokes; each must succeed.
    void StopAndRevoke() const;

    /// A frame as it came, with the picture where it was kept.
    struct Received {
        PxnFrame frame;
        PxnHandle camera;
        PxnHandle stream;
        std::vector<unsigned char> picture;
    };
    std::vector<Received> Frames() const;
    std::size_t Count() const;
    /// False when fewer have come after ten seconds.
    bool WaitForCount(std::size_t count) const;

    /// Run at the end of every callback, on the library's thread.
    std::function<void(PxnFrame*)> onFrame;
    /// Whether pictures are kept.
    bool keepsPictures = false;

private:
    static void PXN_CALL OnFrame(PxnHandle camera, PxnHandle stream, PxnFrame* frame);

    const PxnHandle camera;
    std::vector<std::vector<unsigned char>> memory;
    std::vector<PxnFrame> frames;
    mutable platform::Mutex mutex;
    std::vector<Received> received GUARDED_BY(mutex);
};

} // namespace genicam_test
