// frame_record.cpp - one acquisition buffer
#include "imaging/frame_record.h"

#include <algorithm>
#include <limits>

namespace pyxen {

namespace {

constexpr std::uint64_t kLargestSdkSize = std::numeric_limits<std::uint32_t>::max();
// Up to here no size in bits overflows; no memory holds such an image.
constexpr std::uint64_t kMostPixels = std::uint64_t{1} << 48;

/// Bytes that the converter of a format reads for a whole image. The format's code tells the bits
/// of a pixel.
std::uint64_t BytesToConvert(const PixelFormat& format, std::uint64_t width, std::uint64_t height) {
    const std::uint64_t bits = format.code >> 16 & 0xFF;
    return format.rowAddress ? (width * bits + 7) / 8 * height : (width * height * bits + 7) / 8;
}

std::uint64_t HostBytes(const PixelFormat& format, std::uint64_t pixels) {
    return pixels * format.components * format.allocatedBits / 8;
}

} // namespace

FrameRecord::FrameRecord(void* owner, std::uint64_t index) {
    frame.context[0] = owner;
    frame.context[1] = this;
    frame.context[2] = reinterpret_cast<void*>(static_cast<std::uintptr_t>(index));
}

bool FrameRecord::Allocate(IFrameLayout& layout) {
    format = nullptr;
    const PixelFormat* const newFormat = layout.Format();
    if (!newFormat) {
        return false;
    }
    const std::uint64_t imageSize = layout.ImageSize();
    const std::uint64_t payloadSize = newFormat->convert ? layout.PayloadSize() : 0;
    if ((newFormat->convert ? payloadSize : imageSize) > kLargestSdkSize) {
        return false;
    }
    width = layout.Width();
    height = layout.Height();
    // The camera answered one question after the other; together the answers must not let the
    // converter run past the memory.
    const std::uint64_t pixels = std::uint64_t{width} * height;
    if (newFormat->convert && (pixels > kMostPixels || HostBytes(*newFormat, pixels) > imageSize ||
                               BytesToConvert(*newFormat, width, height) > kLargestSdkSize)) {
        return false;
    }
    // A camera that promises less than its pixel format takes has the rest added here, unfilled.
    const std::uint64_t blockSize =
        payloadSize == 0 ? 0 : std::max(payloadSize, BytesToConvert(*newFormat, width, height));
    if (newFormat->convert ? !AllocateBoth(payloadSize, blockSize, imageSize)
                           : !AllocateHost(imageSize)) {
        return false;
    }
    format = newFormat;
    return true;
}

bool FrameRecord::AllocateBoth(std::uint64_t payloadSize, std::uint64_t blockSize,
                               std::uint64_t imageSize) {
    if (!raw.Resize(blockSize)) {
        return false;
    }
    frame.buffer = raw.Get();
    frame.bufferSize = static_cast<std::uint32_t>(payloadSize);
    return host.Resize(imageSize);
}

bool FrameRecord::AllocateHost(std::uint64_t imageSize) {
    if (!host.Resize(imageSize)) {
        return false;
    }
    raw.Free();
    frame.buffer = host.Get();
    frame.bufferSize = static_cast<std::uint32_t>(imageSize);
    return true;
}

bool FrameRecord::Convert(ConversionHelpers& helpers) {
    if (!format || !format->convert || !raw.Get() || !host.Get()) {
        return false;
    }
    helpers.ConvertImage(*format, raw.Get(), host.Get(), width, height);
    return true;
}

} // namespace pyxen
