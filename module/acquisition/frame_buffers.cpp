// frame_buffers.cpp - giving every buffer of the host a frame record
#include "acquisition/acquisition.h"
#include "sdk/format_text.h"
#include "sdk/no_throw.h"

#include <type_traits>

namespace pyxen {

namespace {

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

/// No chunks are read while one lives. A mutex will not do: shaping waits for a callback, which may
/// be waiting for whoever reads.
class Acquisition::ShapingMark {
public:
    explicit ShapingMark(Acquisition& preparing) : acquisition(preparing) { Set(true); }
    ~ShapingMark() { Set(false); }
    ShapingMark(const ShapingMark&) = delete;
    ShapingMark& operator=(const ShapingMark&) = delete;

private:
    void Set(bool mark) {
        const platform::MutexLock lock(acquisition.chunkMutex);
        acquisition.areRecordsShaped = mark;
    }

    Acquisition& acquisition;
};

MV_ERRCODE Acquisition::Prepare(std::uint64_t count, IFrameLayout& layout) {
    log.Information("CMivoraKVNPyxenClass::PrepareFrameBuffers");
    // Before the mutex: both wait for a running callback, whose receiver may use a serial port.
    if (frames.IsWithSdk()) {
        TakeFramesBack();
    }
    const ShapingMark mark(*this);
    FramePool::Reshaping reshaping(frames);
    if (frames.Size() == 0) {
        notes.Prepare(0); // those of a camera that has gone have been left behind
    }
    MV_ERRCODE result = MV_OK;
    {
        const platform::MutexLock lock(bufferMutex);
        log.Information("  CMivoraKVNPyxenClass::PrepareFrameBuffers: got mutex");
        std::uint64_t requested = 0;
        result = host.PrepareHostBuffers(count, requested);
        buffersPrepared = false;
        if (requested > FramePool::kMostFrames) {
            LogErrorLine(log, "  ERROR: Requested %I64u buffers, but device supports only %I64u",
                         requested, std::uint64_t{FramePool::kMostFrames});
            result = MV_REFUSED;
        } else {
            if (!ShapeFrameRecords(reshaping, requested, layout)) {
                result = MV_REFUSED;
            }
            buffersPrepared = result == MV_OK;
            const bool isHelpWorthwhile =
                buffersPrepared && frames.Size() > 0 && frames[0].IsWorthHelp();
            helpers.Keep(isHelpWorthwhile ? conversionThreads - 1 : 0);
            log.Information("%u Framebuffers are currently allocated.",
                            static_cast<std::uint32_t>(frames.Size()));
        }
    }
    log.Information("CMivoraKVNPyxenClass::PrepareFrameBuffers EXIT");
    return result;
}

bool Acquisition::ShapeFrameRecords(FramePool::Reshaping& reshaping, std::uint64_t count,
                                    IFrameLayout& layout) {
    if (!frames.IsHome()) {
        LogErrorLine(log, "  ERROR: the camera SDK still holds frame buffers");
        return false;
    }
    // Out of memory, some are missing; that is reported below.
    reshaping.Resize(count);
    notes.Prepare(frames.Size());
    for (std::uint64_t index = 0; index < count; ++index) {
        if (index >= frames.Size() || !frames[index].Allocate(layout)) {
            LogErrorLine(log, "  ERROR: could not allocate memory for frame buffers %I64u", index);
            return false;
        }
        log.Information("Allocated buffer %I64u adr = 0x%p, size = %I64u", index,
                        frames[index].GetHostBuffer(), frames[index].GetHostBufferSize());
    }
    return true;
}

} // namespace pyxen
