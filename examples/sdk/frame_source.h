// frame_source.h - fills the queued frames with a test picture
#pragma once

#include "platform/thread.h"
#include "pxnc/skeleton/clock.h"
#include "pxnc/skeleton/frame_book.h"

#include <chrono>
#include <cstdint>

namespace test_camera {

constexpr std::uint32_t kMono8 = 0x01080001; // of the Pixel Format Naming Convention

/// What the camera sends from its start on.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::chrono::nanoseconds interval{0};
};

/// The stream: a thread that takes queued frames, fills them and hands them back.
class FrameSource final : public skeleton::FrameBook {
public:
    FrameSource();
    ~FrameSource() override;

    PxnError StartCapture() override EXCLUDES(mutex);
    PxnError EndCapture() override EXCLUDES(mutex);

    /// The camera's commands. They wait for nothing, so frame callbacks may run them.
    void StartCamera(const Picture& newPicture) EXCLUDES(mutex);
    void StopCamera() EXCLUDES(mutex);
    /// Why a frame has no chunks.
    PxnError ChunksOf(const PxnFrame& frame) const EXCLUDES(mutex);

private:
    static void ThreadProcedure(void* self);
    void Run() EXCLUDES(mutex);
    void SendFrame() REQUIRES(mutex);
    void Fill(const Slot& slot) const REQUIRES(mutex);

    Picture picture GUARDED_BY(mutex);
    skeleton::Clock::time_point due GUARDED_BY(mutex);
    std::uint64_t frameId GUARDED_BY(mutex) = 0;
    bool isSending GUARDED_BY(mutex) = false;
    bool isEnding GUARDED_BY(mutex) = false;
    platform::Thread thread; // started by the first capture
};

} // namespace test_camera
