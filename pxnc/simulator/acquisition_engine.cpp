// acquisition_engine.cpp - fills the queued frames of one stream
#include "pxnc/simulator/acquisition_engine.h"

#include "platform/sleep.h"

#include <algorithm>
#include <utility>

namespace pxsim {
namespace {

// After a longer standstill of the machine the camera continues from there instead of sending
// everything it missed.
constexpr auto kLongestLag = std::chrono::milliseconds(250);

// What a free-running camera spends on a frame that it drops. The thread that sends gives its mutex
// back meanwhile: frames that are sent do so by themselves.
constexpr auto kDroppedFrameTime = std::chrono::microseconds(100);

// Of a packet's bytes: those of the network and of the stream's protocol.
constexpr std::uint32_t kPacketHeaders = 36;

thread_local std::optional<skeleton::Clock::time_point> currentFrameTime;

} // namespace

AcquisitionEngine::AcquisitionEngine(AcquisitionOwner& newOwner,
                                     std::shared_ptr<skeleton::CallbackTurns> turnsOfCamera)
    : FrameBook(std::move(turnsOfCamera)), owner(newOwner) {}

AcquisitionEngine::~AcquisitionEngine() {
    Close();
    {
        platform::MutexLock lock(mutex);
        ending = true;
        changed.NotifyAll();
    }
    thread.Join();
}

PxnError AcquisitionEngine::StartCapture() {
    platform::MutexLock lock(mutex);
    if (!thread.IsJoinable()) {
        thread = platform::Thread::Start(&AcquisitionEngine::ThreadProcedure, this, 0);
        if (!thread.IsJoinable()) {
            return PxnErrResources;
        }
    }
    if (isClosed) {
        return PxnErrNotAvailable;
    }
    nextDue = std::max(nextDue, skeleton::Clock::now());
    SetCapturing(true);
    return PxnErrSuccess;
}

PxnError AcquisitionEngine::EndCapture() {
    platform::MutexLock lock(mutex);
    SetCapturing(false);
    WaitForRunningFrames();
    return PxnErrSuccess;
}

void AcquisitionEngine::Vanish() {
    platform::MutexLock lock(mutex);
    isClosed = true;
    acquiring = false;
    SetCapturing(false);
    FlushQueue();
    while (writing && !thread.IsCurrent()) {
        changed.Wait(mutex);
    }
}

void AcquisitionEngine::BeginAcquisition(const AcquisitionPlan& newPlan) {
    platform::MutexLock lock(mutex);
    plan = newPlan;
    nextFrameId = 0;
    pendingTriggers = 0;
    repeatFrame = false;
    nextDue = skeleton::Clock::now();
    isNew = true;
    acquiring = !isClosed;
    changed.NotifyAll();
}

void AcquisitionEngine::UpdatePlan(const AcquisitionPlan& newPlan) {
    platform::MutexLock lock(mutex);
    plan = newPlan;
    changed.NotifyAll();
}

void AcquisitionEngine::EndAcquisition() {
    platform::MutexLock lock(mutex);
    acquiring = false;
    changed.NotifyAll();
}

void AcquisitionEngine::Trigger() {
    platform::MutexLock lock(mutex);
    if (acquiring) {
        ++pendingTriggers;
        changed.NotifyAll();
    }
}

bool AcquisitionEngine::IsAcquiring() const {
    platform::MutexLock lock(mutex);
    return acquiring;
}

bool AcquisitionEngine::PayloadOf(const PxnFrame* frame, std::uint32_t& bytes) const {
    platform::MutexLock lock(mutex);
    const SlotPointer slot = FindSlot(frame);
    if (!slot) {
        return false;
    }
    bytes = slot->state == SlotState::kDone ? slot->payload : 0;
    return true;
}

std::optional<skeleton::Clock::time_point> AcquisitionEngine::CurrentFrameTime() {
    return currentFrameTime;
}

void AcquisitionEngine::ThreadProcedure(void* self) {
    static_cast<AcquisitionEngine*>(self)->Run();
}

void AcquisitionEngine::Run() {
    platform::MutexLock lock(mutex);
    while (!ending) {
        if (!IsCapturing() || !acquiring) {
            changed.Wait(mutex);
        } else if (isNew) {
            PreparePicture();
        } else if (IsFrameDue()) {
            const RunningFrame running(*this);
            SendFrame();
        }
    }
}

/// Before the first frame: a camera that took it late would send those that follow in a burst.
void AcquisitionEngine::PreparePicture() {
    isNew = false;
    const ImageSetup image = plan.image;
    mutex.Unlock();
    picture.Prepare(image);
    mutex.Lock();
    // By a stopped clock it has taken no time, whatever that has been advanced meanwhile.
    if (!skeleton::IsClockStopped()) {
        nextDue = skeleton::Clock::now();
    }
}

bool AcquisitionEngine::IsFrameDue() {
    if (plan.triggered) {
        if (pendingTriggers == 0) {
            changed.Wait(mutex);
            return false;
        }
        --pendingTriggers;
        return true;
    }
    if (plan.freeRunning) {
        // No frame is lost for lack of a buffer: the camera waits for the host.
        if (queue.empty()) {
            changed.Wait(mutex);
            return false;
        }
        if (skeleton::Clock::now() < dropEnd) {
            changed.WaitUntil(mutex, dropEnd);
            return false;
        }
        return true;
    }
    if (skeleton::Clock::now() < nextDue) {
        changed.WaitUntil(mutex, nextDue);
        return false;
    }
    Schedule();
    return true;
}

void AcquisitionEngine::Schedule() {
    nextDue += std::chrono::nanoseconds(plan.periodNs);
    const skeleton::Clock::time_point now = skeleton::Clock::now();
    if (now - nextDue > kLongestLag) {
        nextDue = now;
    }
}

void AcquisitionEngine::SendFrame() {
    const std::uint64_t frameId = nextFrameId;
    FrameFault fault = FrameFault::kNone;
    if (!repeatFrame) {
        if (Faults::Instance().HasScheduled()) {
            mutex.Unlock();
            owner.OnScheduledFrame(frameId);
            mutex.Lock();
            if (!IsCapturing() || !acquiring) {
                return;
            }
        }
        fault = Faults::Instance().OnFrame(frameId);
    }
    repeatFrame = fault == FrameFault::kDuplicate;
    if (!repeatFrame) {
        ++nextFrameId;
    }
    if (fault == FrameFault::kDropped) {
        ++statistics.lost;
        ++droppedFrames;
        dropEnd = skeleton::Clock::now() + kDroppedFrameTime;
    } else if (queue.empty()) {
        ++statistics.underrun;
        ++droppedFrames;
        CountPackets(plan, fault);
    } else {
        Send(TakeQueued(), frameId, fault);
    }
    FinishWhenComplete();
}

void AcquisitionEngine::Send(const SlotPointer& slot, std::uint64_t frameId, FrameFault fault) {
    writing = true;
    const AcquisitionPlan current = plan;
    mutex.Unlock();
    currentFrameTime = skeleton::Clock::now();
    slot->frame->timestamp = owner.Timestamp();
    Fill(*slot, current, frameId, fault);
    CountPackets(current, fault);
    owner.OnFrameSent(frameId);
    mutex.Lock();
    writing = false;
    HandBack(slot);
    currentFrameTime.reset();
}

void AcquisitionEngine::Fill(Slot& slot, const AcquisitionPlan& current, std::uint64_t frameId,
                             FrameFault fault) {
    if (fault == FrameFault::kLate) {
        platform::SleepMs(kLateMs);
    }
    const ImageSetup& image = current.image;
    slot.payload = 0;
    PxnFrame& frame = *slot.frame;
    frame.frameId = frameId;
    frame.pixelFormat = image.format->code;
    frame.width = image.width;
    frame.height = image.height;
    frame.offsetX = image.offsetX;
    frame.offsetY = image.offsetY;
    frame.imageSize = image.ImageBytes();
    frame.imageData = slot.buffer;
    frame.payloadType = PxnPayloadImage;
    frame.chunkDataPresent = 0;
    frame.receiveStatus = PxnFrameStatusComplete;
    frame.receiveFlags = PxnFrameFlagDimension | PxnFrameFlagOffset | PxnFrameFlagFrameId |
                         PxnFrameFlagTimestamp | PxnFrameFlagImageData | PxnFrameFlagPayloadType;
    if (fault == FrameFault::kTooSmall ||
        slot.bufferSize < std::uint64_t{frame.imageSize} + current.chunkBytes) {
        frame.receiveStatus = PxnFrameStatusTooSmall;
        frame.receiveFlags &= ~static_cast<std::uint32_t>(PxnFrameFlagImageData);
        frame.imageData = nullptr;
        return;
    }
    auto* out = static_cast<std::uint8_t*>(slot.buffer);
    picture.Prepare(image);
    if (fault == FrameFault::kIncomplete) {
        frame.receiveStatus = PxnFrameStatusIncomplete;
        picture.CopyFrame(frameId, image.height / 2, out);
        ++statistics.incomplete;
        return;
    }
    picture.CopyFrame(frameId, image.height, out);
    if (current.chunkBytes != 0) {
        frame.chunkDataPresent = 1;
        frame.receiveFlags |= PxnFrameFlagChunkData;
        owner.WriteChunks(frame, out + frame.imageSize, current.chunkBytes);
    }
    slot.payload = frame.imageSize + current.chunkBytes;
    ++statistics.delivered;
    statistics.bytes += slot.payload;
}

/// Of a frame that came, be it for nothing: a packet before and one behind those of its bytes.
void AcquisitionEngine::CountPackets(const AcquisitionPlan& current, FrameFault fault) {
    if (current.packetSize <= kPacketHeaders) {
        return;
    }
    const std::uint64_t bytes = std::uint64_t{current.image.ImageBytes()} + current.chunkBytes;
    const std::uint64_t room = current.packetSize - kPacketHeaders;
    const std::uint64_t all = (bytes + room - 1) / room + 2;
    const std::uint64_t missing = fault == FrameFault::kIncomplete ? all / 2 : 0;
    statistics.packets += all - missing;
    statistics.missingPackets += missing;
    // What makes a frame late is a packet that had to be asked for again.
    statistics.resentPackets += fault == FrameFault::kLate ? 1 : 0;
}

void AcquisitionEngine::FinishWhenComplete() {
    if (plan.frameCount == 0 || nextFrameId < plan.frameCount || !acquiring) {
        return;
    }
    acquiring = false;
    mutex.Unlock();
    owner.OnAcquisitionFinished();
    mutex.Lock();
}

} // namespace pxsim
