// frame_buffers.cpp - giving every buffer of the host a frame record
#include "acquisition/acquisition_mode.h"
#include "grabber/mivora_gfx_mode_kvn_pyxen.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"

namespace {

constexpr uint64_t kMostBuffers = 100;

template <typename... Arguments>
void LogErrorLine(Logger log, LogFormat<std::type_identity_t<Arguments>...> format,
                  Arguments... arguments) {
    if (log) {
        NoThrow(false, [&] {
            log.ErrorText(FormatText(format, arguments...).c_str());
            return true;
        });
    }
}

} // namespace

MV_ERRCODE CMivoraKVNPyxenClass::PrepareFrameBuffers(uint64_t count) {
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    if (!cameraOpen) {
        return MV_CAMERA_NOT_OPEN;
    }
    if (!ActMode()) {
        return MV_NO_VIDEO_MODE;
    }
    if (acquisitionState != kIdle) {
        return MV_BUSY;
    }
    const Logger log(GetLogSink());
    log.Information("CMivoraKVNPyxenClass::PrepareFrameBuffers");
    MV_ERRCODE result = MV_OK;
    {
        platform::MutexLock lock(serialMutex);
        log.Information("  CMivoraKVNPyxenClass::PrepareFrameBuffers: got mutex");
        result = CPyxenGrabber::PrepareFrameBuffers(count);
        buffersPrepared = false;
        const uint64_t requested = GetRequestedBufferCount();
        if (requested > kMostBuffers) {
            LogErrorLine(log, "  ERROR: Requested %I64u buffers, but device supports only %I64u",
                         requested, kMostBuffers);
            result = MV_REFUSED;
        } else {
            if (!ShapeFrameRecords(requested)) {
                result = MV_REFUSED;
            }
            buffersPrepared = result == MV_OK;
            log.Information("%u Framebuffers are currently allocated.",
                            static_cast<uint32_t>(frameRecords.size()));
        }
    }
    log.Information("CMivoraKVNPyxenClass::PrepareFrameBuffers EXIT");
    return result;
}

bool CMivoraKVNPyxenClass::ShapeFrameRecords(uint64_t count) {
    const Logger log(GetLogSink());
    // Their memory may go here, and the SDK would fill it at the next start.
    if ((frameLeftQueued || framesKept) && !TakeFramesBack()) {
        return false;
    }
    while (frameRecords.size() > count) {
        frameRecords.pop_back();
    }
    // Out of memory, some are missing; that is reported below.
    NoThrow(false, [&] {
        while (frameRecords.size() < count) {
            frameRecords.push_back(std::make_unique<FrameRecord>(this, frameRecords.size()));
        }
        return true;
    });
    CMivoraGfxModeKVNPyxen* const mode = ActMode();
    for (uint64_t index = 0; index < count; ++index) {
        if (index >= frameRecords.size() || !frameRecords[index]->Allocate(mode)) {
            LogErrorLine(log, "  ERROR: could not allocate memory for frame buffers %I64u", index);
            return false;
        }
        FrameRecord& record = *frameRecords[index];
        log.Information("Allocated buffer %I64u adr = 0x%p, size = %I64u", index,
                        record.GetHostBuffer(), record.GetHostBufferSize());
    }
    return true;
}

bool CMivoraKVNPyxenClass::TakeFramesBack() {
    const PxnHandle camera = cameraHandle;
    const PxnError flushed = api.PxnCaptureQueueFlush(camera);
    const PxnError revoked = api.PxnFrameRevokeAll(camera);
    NoteKeptFrames(flushed, revoked);
    frameLeftQueued = false;
    return !framesKept;
}

void* CMivoraKVNPyxenClass::GetFrameBuffer(uint64_t index) {
    return index < frameRecords.size() ? frameRecords[index]->GetHostBuffer() : nullptr;
}
