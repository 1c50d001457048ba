// fuzz_converters.cpp - pixel conversions stay inside their buffers and agree with one another
#include "imaging/conversion/converter_set.h"
#include "imaging/pixel_format.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

using namespace pyxen;

namespace {

constexpr std::size_t kHeader = 6;
constexpr std::uint32_t kMostPixels = 1u << 14;

// The exact size of `pixels` pixels, so that the sanitizer detects any access beyond it.
std::size_t SourceBytes(const PixelFormat& format, std::size_t pixels) {
    const std::string_view name = format.conversionName;
    if (name == "Unpack10p") {
        return (pixels * 10 + 7) / 8;
    }
    if (name == "Unpack12p" || name == "Unpack10Packed" || name == "Unpack12Packed") {
        return (pixels * 12 + 7) / 8;
    }
    if (name == "ConvertYUV444") {
        return pixels * 3;
    }
    if (name == "ConvertYUV422") {
        return pixels / 2 * 4;
    }
    return pixels / 4 * 6; // ConvertYUV411
}

/// Of a whole image: each line is padded where the format has a row address.
std::size_t ImageBytes(const PixelFormat& format, std::uint32_t width, std::uint32_t height) {
    return format.rowAddress ? SourceBytes(format, width) * height
                             : SourceBytes(format, std::size_t{width} * height);
}

/// Bytes that end where their memory ends and begin at an address of any alignment.
class ShiftedBytes {
public:
    ShiftedBytes(std::size_t size, std::size_t newShift) : shift(newShift), bytes(shift + size) {}

    std::uint8_t* Begin() { return bytes.data() + shift; }
    std::size_t Size() const { return bytes.size() - shift; }

private:
    std::size_t shift;
    std::vector<std::uint8_t> bytes;
};

} // namespace

// Format, width, height and alignments in the first bytes, then pixels, which are repeated.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < kHeader) {
        return 0;
    }
    const auto formats = PixelFormatTable();
    const PixelFormat& format = formats[data[0] % formats.size()];
    const std::uint32_t width = data[1] + 256u * (data[2] & 15u);
    const std::uint32_t height = data[3] + 256u * (data[4] & 15u);
    if (!format.convert || std::uint64_t{width} * height > kMostPixels) {
        return 0;
    }
    ShiftedBytes source(ImageBytes(format, width, height), data[5] & 15u);
    if (size > kHeader) {
        for (std::size_t at = 0; at < source.Size(); ++at) {
            source.Begin()[at] = data[kHeader + at % (size - kHeader)];
        }
    }
    const std::size_t hostBytes =
        std::size_t{width} * height * format.components * format.allocatedBits / 8;
    std::vector<std::uint8_t> first;
    for (const ConverterSet* set : UsableConverterSets()) {
        ForceConverterSet(set);
        ShiftedBytes host(hostBytes, data[5] >> 4);
        ConvertImage(format, source.Begin(), host.Begin(), width, height);
        if (set == UsableConverterSets().front()) {
            first.assign(host.Begin(), host.Begin() + hostBytes);
        } else if (!std::equal(first.begin(), first.end(), host.Begin())) {
            std::abort(); // each instruction set must give the same image
        }
    }
    ForceConverterSet(nullptr);
    return 0;
}
