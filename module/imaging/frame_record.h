// frame_record.h - one acquisition buffer
#pragma once

#include "imaging/conversion_helpers.h"
#include "imaging/frame_hold.h"
#include "imaging/frame_layout.h"
#include "imaging/image_memory.h"
#include "pxnc.h"

#include <atomic>
#include <cstdint>

namespace pyxen {

/// The buffer index that a frame was given.
inline std::uint64_t IndexOf(const PxnFrame& frame) {
    return reinterpret_cast<std::uintptr_t>(frame.context[2]);
}

/// A frame that the SDK fills, and the image as the host sees it.
///
/// Reshaped only while acquisition is idle; then the SDK's thread converts into it without a lock.
class FrameRecord {
public:
    /// `owner` and `index` become context words 0 and 2.
    FrameRecord(void* owner, std::uint64_t index);
    FrameRecord(const FrameRecord&) = delete;
    FrameRecord& operator=(const FrameRecord&) = delete;

    /// Gives the record memory for images of that layout; it must be home. False when the pixel
    /// format is unknown, when what the SDK fills is larger than its 32-bit size can tell, when the
    /// size of the image changes meanwhile, or when out of memory.
    bool Allocate(IFrameLayout& layout);
    /// True when the host's image is not what the SDK fills.
    bool IsConverted() const { return format && format->convert; }
    /// Converts the raw image into the host's; true when a conversion was done.
    bool Convert(ConversionHelpers& helpers);
    /// True when the image is one that helpers take part in.
    bool IsWorthHelp() const {
        return IsConverted() &&
               HostRowBytes(*format, width) * height >= ConversionHelpers::kLeastBytes;
    }

    /// The format of the images that there is memory for; null without.
    const PixelFormat* Format() const { return format; }
    /// What the SDK fills.
    ImageMemory& Filled() { return raw.Get() ? raw : host; }
    /// The SDK has filled it, and brings it back.
    void NoteReceived() { received.store(hold.Now(), std::memory_order_release); }
    /// True when the SDK has given back what it had then, and has not had it again.
    bool IsAsReceived() const { return hold.IsHomeSince(received); }

    /// Who may write to the memory.
    FrameHold& Hold() { return hold; }
    const FrameHold& Hold() const { return hold; }
    /// The frame to announce and queue; the SDK's own structure stands first in the record.
    PxnFrame* Frame() { return &frame; }
    void* GetHostBuffer() { return host.Get(); }
    std::uint64_t GetHostBufferSize() const { return host.Size(); }

private:
    bool AllocateBoth(std::uint64_t payloadSize, std::uint64_t blockSize, std::uint64_t imageSize);
    bool AllocateHost(std::uint64_t imageSize);

    PxnFrame frame{}; // context: 0 the owner, 1 this record, 2 the buffer index
    FrameHold hold;
    std::atomic<FrameHold::Moment> received{0};
    ImageMemory raw; // empty when the SDK fills the host's image
    ImageMemory host;
    const PixelFormat* format = nullptr; // null while the memory does not fit
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

} // namespace pyxen
