// scripted_frames.cpp - the frames of an open camera, filled when the test says so
#include "tests/scripted_sdk/scripted_frames.h"

#include "tests/scripted_sdk/sdk_state.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace scripted {

ScriptedFrames::ScriptedFrames(std::size_t indexOfCamera)
    : FrameBook(std::make_shared<skeleton::CallbackTurns>()), camera(indexOfCamera) {}

PxnError ScriptedFrames::StartCapture() {
    platform::MutexLock lock(mutex);
    SetCapturing(true);
    return PxnErrSuccess;
}

PxnError ScriptedFrames::EndCapture() {
    platform::MutexLock lock(mutex);
    SetCapturing(false);
    WaitForRunningFrames();
    return PxnErrSuccess;
}

PxnError ScriptedFrames::Wait(const PxnFrame* frame, std::uint32_t timeoutMs) {
    if (WithModel([](const Model& model) { return model.completeWaitsAtOnce; })) {
        platform::MutexLock lock(mutex);
        const SlotPointer slot =
            Take([&](const Slot& one) { return one.frame == frame && !one.callback; });
        if (slot) {
            Write(*slot, {});
            HandBack(slot);
        }
    }
    return FrameBook::Wait(frame, timeoutMs);
}

bool ScriptedFrames::Deliver(std::uint64_t index, const Filling& filling,
                             skeleton::FunctionRef<void()> onTaken) {
    const bool isHandedBackTwice =
        WithModel([](const Model& model) { return model.broken.framesAreHandedBackTwice; });
    const auto matches = [&](const Slot& slot) {
        return IndexOf(slot) == index && slot.callback;
    };
    platform::MutexLock lock(mutex);
    SlotPointer slot = Take(matches);
    if (!slot && isHandedBackTwice) {
        const auto done = std::find_if(known.begin(), known.end(), [&](const SlotPointer& one) {
            return matches(*one) && one->state == SlotState::kDone;
        });
        slot = done == known.end() ? nullptr : *done;
    }
    if (!slot) {
        return false;
    }
    const RunningFrame running(*this);
    Write(*slot, filling);
    onTaken();
    HandBack(slot);
    return true;
}

bool ScriptedFrames::Complete(std::uint64_t index, PxnError code, const Filling& filling) {
    platform::MutexLock lock(mutex);
    const SlotPointer slot =
        Take([&](const Slot& one) { return IndexOf(one) == index && !one.callback; });
    if (!slot) {
        return false;
    }
    if (code == PxnErrSuccess) {
        Write(*slot, filling);
    }
    HandBack(slot, code);
    return true;
}

void ScriptedFrames::WriteQueued(const Filling& filling) {
    platform::MutexLock lock(mutex);
    for (const SlotPointer& slot : queue) {
        Write(*slot, filling);
    }
}

std::vector<std::uint64_t> ScriptedFrames::AnnouncedFrames() const {
    platform::MutexLock lock(mutex);
    std::vector<std::uint64_t> indices;
    for (const SlotPointer& slot : known) {
        const auto& note = *static_cast<const Note*>(slot->attachment.get());
        if (note.isAnnounced && slot->state != SlotState::kRevoked) {
            indices.push_back(note.index);
        }
    }
    return indices;
}

PxnFrame* ScriptedFrames::FrameOf(std::uint64_t index) const {
    platform::MutexLock lock(mutex);
    for (const SlotPointer& slot : known) {
        const auto& note = *static_cast<const Note*>(slot->attachment.get());
        if (slot->state != SlotState::kRevoked && note.index == index) {
            return slot->frame;
        }
    }
    return nullptr;
}

std::vector<std::uint64_t> ScriptedFrames::QueuedFrames() const {
    platform::MutexLock lock(mutex);
    std::vector<std::uint64_t> indices;
    for (const SlotPointer& slot : queue) {
        indices.push_back(IndexOf(*slot));
    }
    return indices;
}

skeleton::FrameBook::Rules ScriptedFrames::CurrentRules() const {
    return WithModel([](const Model& model) {
        return Rules{.onlyAnnouncedFramesAreQueued = !model.broken.unannouncedFramesAreQueued,
                     .callbacksTakeTurns = !model.broken.callbacksOverlap};
    });
}

PxnError ScriptedFrames::OnAnnounced(Slot& slot, const PxnFrame&) {
    NoteOf(slot).isAnnounced = true;
    return PxnErrSuccess;
}

void ScriptedFrames::OnQueued(Slot& slot) {
    NoteOf(slot);
    SdkState::Instance().NoteQueued(slot.frame, slot.callback, cameraHandle, streamHandle);
}

std::uint64_t ScriptedFrames::IndexOf(const Slot& slot) {
    return static_cast<const Note*>(slot.attachment.get())->index;
}

ScriptedFrames::Note& ScriptedFrames::NoteOf(Slot& slot) {
    if (!slot.attachment) {
        slot.attachment = std::make_shared<Note>();
        std::erase_if(known,
                      [](const SlotPointer& one) { return one->state == SlotState::kRevoked; });
        known.push_back(FindSlot(slot.frame));
    }
    auto& note = *static_cast<Note*>(slot.attachment.get());
    note.index = reinterpret_cast<std::uintptr_t>(slot.frame->context[2]);
    return note;
}

skeleton::FrameBook::SlotPointer
ScriptedFrames::Take(skeleton::FunctionRef<bool(const Slot&)> matches) {
    const auto found = std::find_if(queue.begin(), queue.end(),
                                    [&](const SlotPointer& slot) { return matches(*slot); });
    return found == queue.end() ? nullptr
                                : TakeQueued(static_cast<std::size_t>(found - queue.begin()));
}

void ScriptedFrames::Write(const Slot& slot, const Filling& filling) const {
    PxnFrame& frame = *slot.frame;
    WithModel([&](Model& model) {
        if (camera >= model.cameras.size()) {
            return;
        }
        Camera& features = model.cameras[camera];
        const auto number = [&](const char* name) {
            const Feature* const feature = features.Find(name);
            return feature ? static_cast<std::uint32_t>(feature->intValue) : 0;
        };
        frame.width = number("Width");
        frame.height = number("Height");
        if (const Feature* const format = features.Find("PixelFormat")) {
            for (const EnumEntry& entry : format->entries) {
                if (entry.name == format->text) {
                    frame.pixelFormat = static_cast<std::uint32_t>(entry.intValue);
                }
            }
        }
    });
    frame.receiveStatus = filling.status;
    frame.receiveFlags = PxnFrameFlagDimension | PxnFrameFlagFrameId | PxnFrameFlagImageData;
    frame.frameId = filling.frameId;
    frame.imageData = slot.buffer;
    frame.imageSize = slot.bufferSize;
    frame.payloadType = PxnPayloadImage;
    if (slot.buffer) {
        std::memset(slot.buffer, filling.byte, slot.bufferSize);
    }
}

} // namespace scripted
