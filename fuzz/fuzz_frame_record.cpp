// fuzz_frame_record.cpp - acquisition buffers for whatever sizes a camera reports
#include "imaging/frame_record.h"
#include "imaging/pixel_format.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

using namespace pyxen;

namespace {

constexpr std::uint64_t kLargestSdkSize = 0xFFFFFFFF;
constexpr std::uint64_t kMostMemory = 1u << 16;

/// Sizes from the fuzzer's bytes: each up to 64 KiB, or any that no frame can have, as memory for
/// those between would only cost time.
class Layout final : public IFrameLayout {
public:
    /// `bytes` has kBytes of them.
    explicit Layout(const std::uint8_t* bytes)
        : format(PixelFormatTable()[bytes[0] % PixelFormatTable().size()]),
          isKnown(bytes[1] % 16 != 0) {
        std::memcpy(&imageSize, bytes + 2, sizeof imageSize);
        std::memcpy(&payloadSize, bytes + 10, sizeof payloadSize);
        std::memcpy(&width, bytes + 18, sizeof width);
        std::memcpy(&height, bytes + 22, sizeof height);
        // The memory of a converted image is asked for as it is reported.
        imageSize = !format.convert && imageSize > kLargestSdkSize ? imageSize : Small(imageSize);
        payloadSize = payloadSize > kLargestSdkSize ? payloadSize : Small(payloadSize);
    }

    const PixelFormat* Format() override { return isKnown ? &format : nullptr; }
    std::uint64_t ImageSize() override { return imageSize; }
    std::uint64_t PayloadSize() override { return payloadSize; }
    std::uint32_t Width() override { return width; }
    std::uint32_t Height() override { return height; }

    static constexpr std::size_t kBytes = 26;

private:
    static std::uint64_t Small(std::uint64_t size) { return size % kMostMemory; }

    const PixelFormat& format;
    const bool isKnown;
    std::uint64_t imageSize = 0;
    std::uint64_t payloadSize = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

} // namespace

// One record is reshaped by every layout in turn, as by a camera whose settings change.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FrameRecord record(nullptr, 7);
    ConversionHelpers alone;
    for (; size >= Layout::kBytes; data += Layout::kBytes, size -= Layout::kBytes) {
        Layout layout(data);
        const bool isAllocated = record.Allocate(layout);
        PxnFrame& frame = *record.Frame();
        if (isAllocated && frame.buffer) {
            std::memset(frame.buffer, 0xA5, frame.bufferSize); // what the SDK may write
        }
        const bool isConverted = record.Convert(alone);
        if (isConverted && (!isAllocated || !layout.Format()->convert)) {
            std::abort(); // a record that was not shaped must convert nothing
        }
        if (isAllocated && record.GetHostBufferSize() != layout.ImageSize()) {
            std::abort();
        }
    }
    return 0;
}
