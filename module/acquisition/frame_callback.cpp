// frame_callback.cpp - frames as they come from the SDK's thread
//
// Nothing in here waits or allocates, and without a sink nothing is formatted.
#include "acquisition/acquisition.h"
#include "sdk/callback_scope.h"
#include "sdk/sdk_error.h"

#include <cstdio>

namespace pyxen {

void PXN_CALL Acquisition::OnFrame(PxnHandle, PxnHandle, PxnFrame* frame) {
    const FrameVisit visit(frame);
    if (IFrameReceiver* const receiver = visit.Receiver()) {
        receiver->OnFrame(frame);
    }
}

void Acquisition::Receive(PxnFrame* frame) {
    const CallbackScope scope(this, frame);
    const AcquisitionState::Moment begin = state.Now();
    FrameRecord* const record = frames.FindRecord(*frame);
    const uint64_t index = IndexOf(*frame);
    const bool isComplete = frame->receiveStatus == PxnFrameStatusComplete;
    if (!isComplete) {
        LogReceiveError(*frame);
    } else {
        const uint64_t count = ++framesReceived;
        log.Information(
            "CMivoraKVNPyxenClass::FrameCallback: Successfully grabbed frame: buffer idx = %I64u, total count = %I64u. [RcvSize = %u, %ux%u, PixelFmt = %08X, UniqueId = %I64u]",
            index, count, frame->bufferSize, frame->width, frame->height, frame->pixelFormat,
            frame->frameId);
        if (record && Convert(*record, index)) {
            log.Information("CMivoraKVNPyxenClass::FrameCallback: Image conversion done.");
        }
    }
    NoteFrame(*frame, record, isComplete);
    if (isComplete) {
        host.HandOver(index, true);
    }
    switch (begin.Number()) {
    case kIdle:
        break;
    case kContinuous:
        Requeue(frame, record);
        break;
    case kAsynchronousSingle:
        log.Information(
            "CMivoraKVNPyxenClass::FrameCallback: An asynchronous single snap has finished");
        StartCleanupThread(begin);
        break;
    default:
        log.Error("CMivoraKVNPyxenClass::FrameCallback: unknown snap type");
        break;
    }
}

bool Acquisition::Convert(FrameRecord& record, std::uint64_t index) {
    if (FrameNote* const note = record.IsConverted() ? notes.Find(index) : nullptr) {
        note->BeginChange();
    }
    return record.Convert(helpers);
}

void Acquisition::NoteFrame(const PxnFrame& frame, FrameRecord* record, bool isImageReady) {
    // Frames of one camera come one after the other.
    const std::uint64_t number = framesOfAnyStatus.load(std::memory_order_relaxed) + 1;
    framesOfAnyStatus.store(number, std::memory_order_relaxed);
    const std::uint64_t index = IndexOf(frame);
    if (record) {
        record->NoteReceived();
    }
    if (FrameNote* const note = record ? notes.Find(index) : nullptr) {
        note->Store(frame, number, isImageReady);
    }
    if (listener.HasReceiver()) {
        listener.Deliver(DescribeFrame(frame, index, number, record && isImageReady));
    }
}

void Acquisition::LogReceiveError(const PxnFrame& frame) {
    if (!log) {
        return;
    }
    char unknown[32];
    const char* text = unknown;
    switch (frame.receiveStatus) {
    case PxnFrameStatusInvalid:
        text = "Frame buffer was invalid";
        break;
    case PxnFrameStatusTooSmall:
        text = "Frame buffer was too small";
        break;
    case PxnFrameStatusIncomplete:
        text = "Frame could not be filled to the end";
        break;
    default:
        std::snprintf(unknown, sizeof unknown, "Unknown error: %d", frame.receiveStatus);
        break;
    }
    log.Error(
        "CMivoraKVNPyxenClass::FrameCallback: Receive error: \"%s\" at buffer idx = %I64u. [RcvSize = %u, %ux%u, PixelFmt = %08X, UniqueId = %I64u]",
        text, IndexOf(frame), frame.bufferSize, frame.width, frame.height, frame.pixelFormat,
        frame.frameId);
}

void Acquisition::Requeue(PxnFrame* frame, FrameRecord* record) {
    // Whoever holds the mutex is stopping: the frame is not wanted back.
    if (!requeueMutex.TryLock()) {
        return;
    }
    if (!stopEvent->IsSet()) {
        if (const PxnError result = QueueUnlocked(frame, record, &OnFrame)) {
            ReportSdkError("CMivoraKVNPyxenClass::FrameCallback: Cannot requeue frame", result,
                           log);
        }
    }
    requeueMutex.Unlock();
}

} // namespace pyxen
