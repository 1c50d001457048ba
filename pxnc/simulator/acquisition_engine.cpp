#include "pxnc/simulator/acquisition_engine.h"

#include "platform/sleep.h"
#include "pxnc/simulator/callback_scope.h"

#include <algorithm>
#include <cassert>

namespace pxsim {
namespace {

// After a longer standstill of the machine the camera goes on from there instead of sending
// everything it missed.
constexpr auto kLongestLag = std::chrono::milliseconds(250);

} // namespace

AcquisitionEngine::AcquisitionEngine(AcquisitionOwner& newOwner, Accounting& newAccounting)
    : owner(newOwner), accounting(newAccounting) {}

AcquisitionEngine::~AcquisitionEngine() {
    Close();
    {
        platform::MutexLock lock(mutex);
        ending = true;
        changed.NotifyAll();
    }
    thread.Join();
}

void AcquisitionEngine::Open(PxnHandle camera, PxnHandle stream) {
    platform::MutexLock lock(mutex);
    assert(slots.empty() && begunFrames == endedFrames);
    cameraHandle = camera;
    streamHandle = stream;
    closed = false;
}

void AcquisitionEngine::Close() {
    platform::MutexLock lock(mutex);
    capturing = false;
    capturingNow = false;
    acquiring = false;
    closed = true;
    FlushQueue();
    changed.NotifyAll();
    WaitForRunningFrame();
    FlushQueue();
    RevokeSlots(accounting.revokedByClose);
}

void AcquisitionEngine::Vanish() {
    platform::MutexLock lock(mutex);
    closed = true;
    capturing = false;
    capturingNow = false;
    acquiring = false;
    FlushQueue();
    changed.NotifyAll();
    while (writing && !thread.IsCurrent()) {
        changed.Wait(mutex);
    }
}

PxnError AcquisitionEngine::Announce(const PxnFrame* frame) {
    if (frame->buffer == nullptr && frame->bufferSize != 0) {
        return PxnErrBadParameter;
    }
    platform::MutexLock lock(mutex);
    if (closed) {
        return PxnErrNotAvailable;
    }
    SlotPointer& slot = slots[frame];
    if (!slot) {
        slot = std::make_shared<Slot>();
        // The SDK fills the record of the host that announced it: that is what it is for.
        slot->frame = const_cast<PxnFrame*>(frame);
        if (queue.size() < slots.size()) {
            std::rotate(queue.begin(), queue.begin() + static_cast<std::ptrdiff_t>(queueHead),
                        queue.end());
            queueHead = 0;
            queue.resize(slots.size() * 2);
        }
        ++accounting.announced;
    }
    while (slot->state == SlotState::kFilling) {
        const SlotPointer filling = slot;
        changed.Wait(mutex);
        if (filling->state == SlotState::kRevoked) {
            return PxnErrNotAvailable;
        }
    }
    slot->buffer = frame->buffer;
    slot->bufferSize = frame->bufferSize;
    UpdateCounts();
    return PxnErrSuccess;
}

PxnError AcquisitionEngine::Revoke(const PxnFrame* frame) {
    if (InsideFrameCallback()) {
        return PxnErrInvalidCall;
    }
    platform::MutexLock lock(mutex);
    SlotPointer slot = FindSlot(frame);
    if (!slot) {
        return PxnErrNotFound;
    }
    if (slot->state == SlotState::kDone) {
        WaitForRunningFrame();
    }
    if (slot->state == SlotState::kQueued || slot->state == SlotState::kFilling) {
        return PxnErrInUse;
    }
    slot->state = SlotState::kRevoked;
    slots.erase(frame);
    ++accounting.revoked;
    UpdateCounts();
    changed.NotifyAll();
    return PxnErrSuccess;
}

PxnError AcquisitionEngine::RevokeAll() {
    if (InsideFrameCallback()) {
        return PxnErrInvalidCall;
    }
    platform::MutexLock lock(mutex);
    FlushQueue();
    WaitForRunningFrame();
    FlushQueue(); // what the callback queued again meanwhile
    RevokeSlots(accounting.revoked);
    return PxnErrSuccess;
}

PxnError AcquisitionEngine::StartCapture() {
    if (InsideFrameCallback()) {
        return PxnErrInvalidCall;
    }
    platform::MutexLock lock(mutex);
    if (!thread.IsJoinable()) {
        thread = platform::Thread::Start(&AcquisitionEngine::ThreadProcedure, this, 0);
        if (!thread.IsJoinable()) {
            return PxnErrResources;
        }
    }
    if (closed) {
        return PxnErrNotAvailable;
    }
    capturing = true;
    capturingNow = true;
    nextDue = std::max(nextDue, Clock::now());
    changed.NotifyAll();
    return PxnErrSuccess;
}

PxnError AcquisitionEngine::EndCapture() {
    if (InsideFrameCallback()) {
        return PxnErrInvalidCall;
    }
    platform::MutexLock lock(mutex);
    capturing = false;
    capturingNow = false;
    changed.NotifyAll();
    WaitForRunningFrame();
    return PxnErrSuccess;
}

PxnError AcquisitionEngine::Queue(const PxnFrame* frame, PxnFrameCallback callback) {
    platform::MutexLock lock(mutex);
    SlotPointer slot = FindSlot(frame);
    if (!slot) {
        return PxnErrNotFound;
    }
    if (closed) {
        return PxnErrNotAvailable;
    }
    if (slot->state == SlotState::kQueued || slot->state == SlotState::kFilling) {
        return PxnErrAlready;
    }
    slot->state = SlotState::kQueued;
    slot->callback = callback;
    assert(queueLength < queue.size());
    queue[(queueHead + queueLength) % queue.size()] = std::move(slot);
    ++queueLength;
    ++accounting.queued;
    UpdateCounts();
    changed.NotifyAll();
    return PxnErrSuccess;
}

PxnError AcquisitionEngine::Wait(const PxnFrame* frame, std::uint32_t timeoutMs) {
    if (InsideFrameCallback()) {
        return PxnErrInvalidCall;
    }
    const bool unlimited = timeoutMs == 0xFFFFFFFF;
    const Clock::time_point limit = Clock::now() + std::chrono::milliseconds(timeoutMs);
    platform::MutexLock lock(mutex);
    const SlotPointer slot = FindSlot(frame);
    if (!slot) {
        return PxnErrNotFound;
    }
    while (slot->state != SlotState::kDone) {
        const bool coming =
            slot->state == SlotState::kFilling || (slot->state == SlotState::kQueued && capturing);
        if (!coming || closed) {
            return PxnErrNotAvailable;
        }
        if (!unlimited && Clock::now() >= limit) {
            return PxnErrTimeout;
        }
        if (unlimited) {
            changed.Wait(mutex);
        } else {
            changed.WaitUntil(mutex, limit);
        }
    }
    return PxnErrSuccess;
}

PxnError AcquisitionEngine::Flush() {
    if (InsideFrameCallback()) {
        return PxnErrInvalidCall;
    }
    platform::MutexLock lock(mutex);
    FlushQueue();
    WaitForRunningFrame();
    FlushQueue();
    changed.NotifyAll();
    return PxnErrSuccess;
}

void AcquisitionEngine::BeginAcquisition(const AcquisitionPlan& newPlan) {
    platform::MutexLock lock(mutex);
    plan = newPlan;
    nextFrameId = 0;
    pendingTriggers = 0;
    repeatFrame = false;
    nextDue = Clock::now();
    acquiring = !closed;
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

void AcquisitionEngine::ThreadProcedure(void* self) {
    static_cast<AcquisitionEngine*>(self)->Run();
}

void AcquisitionEngine::Run() {
    platform::MutexLock lock(mutex);
    while (!ending) {
        if (!capturing || !acquiring) {
            changed.Wait(mutex);
        } else if (IsFrameDue()) {
            ++begunFrames;
            SendFrame();
            ++endedFrames;
            changed.NotifyAll();
        }
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
        // Nothing is lost for want of a buffer: the camera waits for the host.
        if (queueLength == 0) {
            changed.Wait(mutex);
            return false;
        }
        return true;
    }
    if (Clock::now() < nextDue) {
        changed.WaitUntil(mutex, nextDue);
        return false;
    }
    Schedule();
    return true;
}

void AcquisitionEngine::Schedule() {
    nextDue += std::chrono::nanoseconds(plan.periodNs);
    const Clock::time_point now = Clock::now();
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
            if (!capturing || !acquiring) {
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
        ++accounting.dropped;
    } else if (queueLength == 0) {
        ++statistics.underrun;
        ++accounting.dropped;
    } else {
        const SlotPointer slot = std::move(queue[queueHead]);
        queueHead = (queueHead + 1) % queue.size();
        --queueLength;
        UpdateCounts();
        Hand(slot, frameId, fault);
    }
    FinishWhenComplete();
}

void AcquisitionEngine::Hand(const SlotPointer& slot, std::uint64_t frameId, FrameFault fault) {
    slot->state = SlotState::kFilling;
    writing = true;
    const AcquisitionPlan current = plan;
    mutex.Unlock();
    const Clock::time_point time = Clock::now();
    slot->frame->timestamp = owner.Timestamp();
    Fill(*slot, current, frameId, fault);
    owner.OnFrameSent(frameId);
    mutex.Lock();
    writing = false;
    slot->state = SlotState::kDone;
    ++accounting.completed;
    const PxnFrameCallback callback = closed ? nullptr : slot->callback;
    changed.NotifyAll();
    if (callback != nullptr) {
        PxnFrame* frame = slot->frame;
        PxnHandle camera = cameraHandle;
        PxnHandle stream = streamHandle;
        ++accounting.callbacks;
        mutex.Unlock();
        {
            CallbackScope scope(CallbackKind::kFrame, time);
            callback(camera, stream, frame);
        }
        mutex.Lock();
    }
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

void AcquisitionEngine::FinishWhenComplete() {
    if (plan.frameCount == 0 || nextFrameId < plan.frameCount || !acquiring) {
        return;
    }
    acquiring = false;
    mutex.Unlock();
    owner.OnAcquisitionFinished();
    mutex.Lock();
}

void AcquisitionEngine::FlushQueue() {
    for (; queueLength > 0; --queueLength) {
        SlotPointer slot = std::move(queue[queueHead]);
        queueHead = (queueHead + 1) % queue.size();
        slot->state = SlotState::kIdle;
        ++accounting.flushed;
    }
    UpdateCounts();
}

void AcquisitionEngine::RevokeSlots(std::atomic<std::uint64_t>& counter) {
    for (auto& [frame, slot] : slots) {
        slot->state = SlotState::kRevoked;
        ++counter;
    }
    slots.clear();
    UpdateCounts();
    changed.NotifyAll();
}

void AcquisitionEngine::WaitForRunningFrame() {
    if (thread.IsCurrent()) {
        return;
    }
    const std::uint64_t target = begunFrames;
    while (endedFrames < target) {
        changed.Wait(mutex);
    }
}

AcquisitionEngine::SlotPointer AcquisitionEngine::FindSlot(const PxnFrame* frame) const {
    auto found = slots.find(frame);
    return found == slots.end() ? nullptr : found->second;
}

void AcquisitionEngine::UpdateCounts() {
    statistics.announced = static_cast<std::uint32_t>(slots.size());
    statistics.queued = static_cast<std::uint32_t>(queueLength);
}

} // namespace pxsim
