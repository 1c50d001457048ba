// frame_source.cpp - fills the queued frames with a test picture
#include "frame_source.h"

#include <memory>

namespace test_camera {

FrameSource::FrameSource() : FrameBook(std::make_shared<skeleton::CallbackTurns>()) {}

FrameSource::~FrameSource() {
    {
        platform::MutexLock lock(mutex);
        isEnding = true;
        changed.NotifyAll();
    }
    thread.Join();
}

PxnError FrameSource::StartCapture() {
    platform::MutexLock lock(mutex);
    if (isClosed) {
        return PxnErrNotAvailable;
    }
    if (!thread.IsJoinable()) {
        thread = platform::Thread::Start(&FrameSource::ThreadProcedure, this, 0);
    }
    if (!thread.IsJoinable()) {
        return PxnErrResources;
    }
    SetCapturing(true);
    return PxnErrSuccess;
}

PxnError FrameSource::EndCapture() {
    platform::MutexLock lock(mutex);
    SetCapturing(false);
    WaitForRunningFrames();
    return PxnErrSuccess;
}

void FrameSource::StartCamera(const Picture& newPicture) {
    platform::MutexLock lock(mutex);
    picture = newPicture;
    frameId = 0;
    due = skeleton::Clock::now();
    isSending = true;
    changed.NotifyAll();
}

void FrameSource::StopCamera() {
    platform::MutexLock lock(mutex);
    isSending = false;
    changed.NotifyAll();
}

PxnError FrameSource::ChunksOf(const PxnFrame& frame) const {
    platform::MutexLock lock(mutex);
    const SlotPointer slot = FindSlot(&frame);
    if (!slot) {
        return PxnErrNotFound;
    }
    return slot->state == SlotState::kDone ? PxnErrNoChunkData : PxnErrNoData;
}

void FrameSource::ThreadProcedure(void* self) {
    static_cast<FrameSource*>(self)->Run();
}

void FrameSource::Run() {
    platform::MutexLock lock(mutex);
    while (!isEnding) {
        if (!IsCapturing() || !isSending) {
            changed.Wait(mutex);
        } else if (skeleton::Clock::now() < due) {
            changed.WaitUntil(mutex, due);
        } else {
            SendFrame();
        }
    }
}

void FrameSource::SendFrame() {
    due = std::max(due + picture.interval, skeleton::Clock::now() - picture.interval);
    if (!queue.empty()) {
        const RunningFrame running(*this);
        const SlotPointer slot = TakeQueued();
        Fill(*slot);
        HandBack(slot); // calls back, without the mutex meanwhile
    }
    ++frameId; // also of a frame that is lost because none was queued
}

void FrameSource::Fill(const Slot& slot) const {
    PxnFrame& frame = *slot.frame;
    frame.receiveStatus = PxnFrameStatusComplete;
    frame.receiveFlags = PxnFrameFlagDimension | PxnFrameFlagOffset | PxnFrameFlagFrameId |
                         PxnFrameFlagTimestamp | PxnFrameFlagImageData | PxnFrameFlagPayloadType;
    frame.frameId = frameId;
    frame.timestamp = static_cast<std::uint64_t>(
        std::chrono::nanoseconds(skeleton::Clock::now().time_since_epoch()).count());
    frame.pixelFormat = kMono8;
    frame.width = picture.width;
    frame.height = picture.height;
    frame.offsetX = 0;
    frame.offsetY = 0;
    frame.imageSize = picture.width * picture.height;
    frame.imageData = slot.buffer;
    frame.payloadType = PxnPayloadImage;
    frame.chunkDataPresent = 0;
    if (slot.bufferSize < frame.imageSize) {
        frame.receiveStatus = PxnFrameStatusTooSmall;
        frame.receiveFlags &= ~static_cast<std::uint32_t>(PxnFrameFlagImageData);
        frame.imageData = nullptr;
        return;
    }
    auto* pixel = static_cast<std::uint8_t*>(slot.buffer);
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        for (std::uint32_t x = 0; x < picture.width; ++x) {
            *pixel++ = static_cast<std::uint8_t>(x + y + frameId);
        }
    }
}

} // namespace test_camera
