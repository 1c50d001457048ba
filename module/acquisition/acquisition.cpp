// acquisition.cpp - what is always there, and the calls that move frames
#include "acquisition/acquisition.h"

#include "sdk/callback_scope.h"
#include "sdk/no_throw.h"

#include <utility>

namespace pyxen {

namespace {

std::unique_ptr<platform::Event> CreateEventOrNull() {
    return NoThrow<std::unique_ptr<platform::Event>>(nullptr, [] {
        auto event = std::make_unique<platform::Event>();
        return event->IsValid() ? std::move(event) : nullptr;
    });
}

} // namespace

Acquisition::Acquisition(void* frameOwner, CPyxenAPIAccess& access,
                         const std::atomic<PxnHandle>& openCamera, platform::Mutex& buffers,
                         IAcquisitionHost& acquisitionHost, Logger logger)
    : api(access),
      cameraHandle(openCamera),
      bufferMutex(buffers),
      host(acquisitionHost),
      log(logger),
      frames(frameOwner, acquisitionHost) {}

Acquisition::~Acquisition() {
    End();
}

void Acquisition::CreateEvents() {
    for (auto& event : acquisitionEvents) {
        event = CreateEventOrNull();
    }
    stopEvent = CreateEventOrNull();
}

void* Acquisition::FrameBuffer(std::uint64_t index) {
    return index < frames.Size() ? frames[index].GetHostBuffer() : nullptr;
}

void Acquisition::End() {
    if (stopEvent) {
        // From here on no frame callback starts another cleanup thread.
        stopEvent->Set();
    }
    JoinCleanupThread();
    helpers.Keep(0);
}

PxnError Acquisition::CloseCamera(std::unique_ptr<CameraNote>& camera) {
    const PxnError result = frames.TakeBack([&] { return api.PxnCameraClose(camera->handle); });
    helpers.Keep(0);
    if (result != PxnErrSuccess) {
        LeaveCamera(std::move(camera));
    }
    return result;
}

void Acquisition::LeaveCamera(std::unique_ptr<CameraNote> camera) {
    helpers.Keep(0);
    camera->memory = frames.Abandon();
    if (camera->memory) {
        buffersPrepared = false; // the next camera gets none of its frames
    }
    RememberUnclosedCamera(std::move(camera));
}

PxnError Acquisition::Announce(FrameRecord& record) {
    return api.PxnFrameAnnounce(cameraHandle, record.Frame(), sizeof(PxnFrame));
}

PxnError Acquisition::Queue(PxnFrame* frame, FrameRecord* record, PxnFrameCallback callback) {
    const platform::MutexLock lock(chunkMutex);
    return QueueUnlocked(frame, record, callback);
}

PxnError Acquisition::QueueUnlocked(PxnFrame* frame, FrameRecord* record,
                                    PxnFrameCallback callback) {
    const auto queue = [&] {
        return api.PxnCaptureFrameQueue(cameraHandle, frame, callback);
    };
    if (!record || record->Frame() != frame) {
        return queue();
    }
    FrameNote* const note = record->IsConverted() ? nullptr : notes.Find(IndexOf(*frame));
    const std::uint64_t before = note ? note->Leave() : 0;
    const PxnError result = FramePool::Queue(*record, queue);
    if (note && result != PxnErrSuccess && result != PxnErrAlready) {
        note->Restore(before);
    }
    return result;
}

PxnError Acquisition::Flush() {
    return frames.TakeBack([&] { return api.PxnCaptureQueueFlush(cameraHandle); });
}

PxnError Acquisition::RevokeAll() {
    return frames.TakeBack([&] { return api.PxnFrameRevokeAll(cameraHandle); });
}

void Acquisition::TakeFramesBack() {
    Flush();
    RevokeAll();
}

void Acquisition::Undo(UndoList steps) {
    for (const UndoStep step : steps) {
        switch (step) {
        case UndoStep::kEndCapture:
            api.PxnCaptureEnd(cameraHandle);
            break;
        case UndoStep::kFlush:
            Flush();
            break;
        case UndoStep::kRevokeAll:
            RevokeAll();
            break;
        }
    }
}

} // namespace pyxen
