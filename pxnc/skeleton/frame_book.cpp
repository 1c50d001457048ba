// frame_book.cpp - the announced frames of a stream and what has become of them
#include "pxnc/skeleton/frame_book.h"

#include "pxnc/skeleton/callback_scope.h"

#include <chrono>
#include <utility>

namespace skeleton {

FrameBook::FrameBook(std::shared_ptr<CallbackTurns> turnsOfCamera)
    : turns(std::move(turnsOfCamera)) {}

void FrameBook::Open(PxnHandle camera, PxnHandle stream) {
    platform::MutexLock lock(mutex);
    cameraHandle = camera;
    streamHandle = stream;
    isClosed = false;
}

void FrameBook::Close() {
    EndCapture();
    platform::MutexLock lock(mutex);
    isClosed = true;
    FlushQueue();
    WaitForRunningFrames();
    FlushQueue();
    RevokeSlots(counts.revokedByClose);
}

PxnError FrameBook::Announce(const PxnFrame* frame) {
    if (!frame->buffer && frame->bufferSize != 0) {
        return PxnErrBadParameter;
    }
    platform::MutexLock lock(mutex);
    if (isClosed) {
        return PxnErrNotAvailable;
    }
    SlotPointer slot = FindSlot(frame);
    while (slot && slot->state == SlotState::kFilling) {
        changed.Wait(mutex);
    }
    if (slot && slot->state == SlotState::kRevoked) {
        return PxnErrNotAvailable;
    }
    const bool isNew = !slot;
    if (isNew) {
        slot = AddSlot(frame);
    }
    if (const PxnError refused = OnAnnounced(*slot, *frame)) {
        if (isNew) {
            slots.erase(frame);
        }
        return refused;
    }
    slot->buffer = frame->buffer;
    slot->bufferSize = frame->bufferSize;
    counts.announced += isNew ? 1 : 0;
    UpdateCounts();
    return PxnErrSuccess;
}

FrameBook::SlotPointer FrameBook::AddSlot(const PxnFrame* frame) {
    auto slot = std::make_shared<Slot>();
    // The SDK fills the host's record: that is what it was announced for.
    slot->frame = const_cast<PxnFrame*>(frame);
    slots.emplace(frame, slot);
    if (queue.capacity() < slots.size()) {
        queue.reserve(slots.size() * 2);
    }
    return slot;
}

PxnError FrameBook::Revoke(const PxnFrame* frame) {
    platform::MutexLock lock(mutex);
    const SlotPointer slot = FindSlot(frame);
    if (!slot) {
        return PxnErrNotFound;
    }
    if (slot->state == SlotState::kDone) {
        WaitForRunningFrames();
    }
    if (slot->state == SlotState::kQueued || slot->state == SlotState::kFilling) {
        return PxnErrInUse;
    }
    if (slot->state == SlotState::kRevoked) { // by another thread meanwhile
        return PxnErrNotFound;
    }
    slot->state = SlotState::kRevoked;
    slots.erase(frame);
    ++counts.revoked;
    UpdateCounts();
    changed.NotifyAll();
    return PxnErrSuccess;
}

PxnError FrameBook::RevokeAll() {
    for (;;) {
        const PxnError flushed = Flush();
        platform::MutexLock lock(mutex);
        // Another thread may have queued again.
        if (queue.empty() && begunFrames == endedFrames) {
            RevokeSlots(counts.revoked);
            return flushed;
        }
    }
}

PxnError FrameBook::Queue(const PxnFrame* frame, PxnFrameCallback callback) {
    platform::MutexLock lock(mutex);
    SlotPointer slot = FindSlot(frame);
    if (!slot && CurrentRules().onlyAnnouncedFramesAreQueued) {
        return PxnErrNotFound;
    }
    if (isClosed) {
        return PxnErrNotAvailable;
    }
    if (!slot) {
        slot = AddSlot(frame);
        slot->buffer = frame->buffer;
        slot->bufferSize = frame->bufferSize;
    }
    if (slot->state == SlotState::kQueued || slot->state == SlotState::kFilling) {
        return PxnErrAlready;
    }
    slot->state = SlotState::kQueued;
    slot->callback = callback;
    queue.push_back(slot);
    ++counts.queued;
    UpdateCounts();
    OnQueued(*slot);
    changed.NotifyAll();
    return PxnErrSuccess;
}

PxnError FrameBook::Wait(const PxnFrame* frame, std::uint32_t timeoutMs) {
    const bool isUnlimited = timeoutMs == 0xFFFFFFFF;
    const Clock::time_point limit = Clock::now() + std::chrono::milliseconds(timeoutMs);
    platform::MutexLock lock(mutex);
    const SlotPointer slot = FindSlot(frame);
    if (!slot) {
        return PxnErrNotFound;
    }
    while (slot->state != SlotState::kDone) {
        const bool isComing = slot->state == SlotState::kFilling ||
                              (slot->state == SlotState::kQueued && isCapturing);
        if (!isComing || isClosed) {
            return PxnErrNotAvailable;
        }
        if (!isUnlimited && Clock::now() >= limit) {
            return PxnErrTimeout;
        }
        if (isUnlimited) {
            changed.Wait(mutex);
        } else {
            changed.WaitUntil(mutex, limit);
        }
    }
    return slot->result;
}

PxnError FrameBook::Flush() {
    platform::MutexLock lock(mutex);
    FlushQueue();
    WaitForRunningFrames();
    FlushQueue(); // what the callback queued again meanwhile
    return PxnErrSuccess;
}

FrameBook::SlotPointer FrameBook::TakeQueued(std::size_t position) {
    SlotPointer slot = std::move(queue[position]);
    queue.erase(queue.begin() + static_cast<std::ptrdiff_t>(position));
    slot->state = SlotState::kFilling;
    UpdateCounts();
    return slot;
}

void FrameBook::HandBack(const SlotPointer& slot, PxnError result) {
    slot->result = result;
    slot->state = SlotState::kDone;
    ++counts.completed;
    changed.NotifyAll();
    if (slot->callback && !isClosed) {
        CallBack(*slot);
    }
}

void FrameBook::CallBack(const Slot& slot) {
    const PxnFrameCallback callback = slot.callback;
    PxnFrame* const frame = slot.frame;
    const PxnHandle camera = cameraHandle;
    const PxnHandle stream = streamHandle;
    const bool takesTurns = CurrentRules().callbacksTakeTurns;
    ++counts.callbacks;
    mutex.Unlock();
    const auto run = [&] {
        const CallbackScope scope(CallbackKind::kFrame);
        callback(camera, stream, frame);
    };
    if (takesTurns) {
        const CallbackTurns::Turn turn(*turns);
        run();
    } else {
        run();
    }
    mutex.Lock();
}

void FrameBook::FlushQueue() {
    for (const SlotPointer& slot : queue) {
        slot->state = SlotState::kIdle;
    }
    counts.flushed += queue.size();
    queue.clear();
    UpdateCounts();
    changed.NotifyAll();
}

void FrameBook::RevokeSlots(std::atomic<std::uint64_t>& counter) {
    for (auto& [frame, slot] : slots) {
        slot->state = SlotState::kRevoked;
    }
    counter += slots.size();
    slots.clear();
    UpdateCounts();
    changed.NotifyAll();
}

void FrameBook::WaitForRunningFrames() {
    const std::uint64_t target = begunFrames;
    while (endedFrames < target) {
        changed.Wait(mutex);
    }
}

FrameBook::SlotPointer FrameBook::FindSlot(const PxnFrame* frame) const {
    const auto found = slots.find(frame);
    return found == slots.end() ? nullptr : found->second;
}

void FrameBook::SetCapturing(bool value) {
    isCapturing = value;
    changed.NotifyAll();
}

void FrameBook::UpdateCounts() {
    announcedFrames = static_cast<std::uint32_t>(slots.size());
    queuedFrames = static_cast<std::uint32_t>(queue.size());
}

} // namespace skeleton
