// shown_image.cpp - frames as a page shows them
#include "apps/serve/shown_image.h"

#include "apps/common/demosaic.h"
#include "apps/common/picture.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

/// What a demosaiced pixel depends on: its neighbours.
constexpr std::uint32_t kFilterMargin = 1;

template <typename Sample>
const Sample* SamplesOf(const ServedFrame& frame) {
    return reinterpret_cast<const Sample*>(frame.bytes.data());
}

std::uint32_t ShownChannels(const ImageLayout& layout) {
    return layout.components == 1 && layout.colorCoding != MVCC_RAW_CFA ? 1 : 3;
}

ShownImage NewImage(std::uint32_t width, std::uint32_t height, std::uint32_t channels) {
    ShownImage image{width, height, channels, nullptr, {}};
    image.own.resize(std::size_t{width} * height * channels);
    image.pixels = image.own.data();
    return image;
}

/// Each channel is the mean of four samples of the block, which has `factor` pixels in a row.
template <typename Sample>
void ReduceBlocks(const ServedFrame& frame, std::uint32_t factor, ShownImage& image) {
    const ImageLayout& layout = frame.layout;
    const Sample* const samples = SamplesOf<Sample>(frame);
    const std::array<std::uint32_t, 4> order = ChannelOrder(layout.colorCoding);
    const std::uint32_t mask = (1u << layout.bits) - 1;
    const std::uint32_t near = factor / 4;
    const std::uint32_t far = factor - 1 - near;
    const std::size_t pitch = std::size_t{layout.width} * layout.components;
    std::uint8_t* out = image.own.data();
    for (std::uint32_t y = 0; y < image.height; ++y) {
        const Sample* const upper = samples + (std::size_t{y} * factor + near) * pitch;
        const Sample* const lower = samples + (std::size_t{y} * factor + far) * pitch;
        for (std::uint32_t x = 0; x < image.width; ++x) {
            const std::size_t left = (std::size_t{x} * factor + near) * layout.components;
            const std::size_t right = (std::size_t{x} * factor + far) * layout.components;
            for (std::uint32_t channel = 0; channel < image.channels; ++channel) {
                const std::size_t at = order[channel];
                const std::uint32_t sum = (upper[left + at] & mask) + (upper[right + at] & mask) +
                                          (lower[left + at] & mask) + (lower[right + at] & mask);
                *out++ = ScaleTo8Bits(sum / 4, layout.bits);
            }
        }
    }
}

/// Each pixel is the cell of two by two in the middle of its block.
template <typename Sample>
void ReduceCells(const ServedFrame& frame, std::uint32_t factor, ShownImage& image) {
    const ImageLayout& layout = frame.layout;
    const Sample* const samples = SamplesOf<Sample>(frame);
    const std::uint32_t mask = (1u << layout.bits) - 1;
    std::uint8_t* out = image.own.data();
    for (std::uint32_t y = 0; y < image.height; ++y) {
        const std::uint32_t row = (y * factor + factor / 2) / 2 * 2;
        for (std::uint32_t x = 0; x < image.width; ++x, out += 3) {
            const std::uint32_t column = (x * factor + factor / 2) / 2 * 2;
            std::uint32_t green = 0;
            for (std::uint32_t pixel = 0; pixel < 4; ++pixel) {
                const std::uint32_t line = std::min(row + pixel / 2, layout.height - 1);
                const std::uint32_t place = std::min(column + pixel % 2, layout.width - 1);
                const std::uint32_t value =
                    samples[std::size_t{line} * layout.width + place] & mask;
                switch (FilterLetter(layout, place, line)) {
                case 'R':
                    out[0] = ScaleTo8Bits(value, layout.bits);
                    break;
                case 'B':
                    out[2] = ScaleTo8Bits(value, layout.bits);
                    break;
                default:
                    green += value;
                }
            }
            out[1] = ScaleTo8Bits(green / 2, layout.bits);
        }
    }
}

} // namespace

ShownImage ShowReduced(const ServedFrame& frame, std::uint32_t mostWidth) {
    const ImageLayout& layout = frame.layout;
    const std::uint32_t factor =
        std::max<std::uint32_t>((layout.width + mostWidth - 1) / std::max(mostWidth, 1u), 1);
    const bool isFiltered = layout.colorCoding == MVCC_RAW_CFA;
    if (factor == 1) {
        return ShowPart(frame, 0, 0, layout.width, layout.height);
    }
    const std::uint32_t reduced = std::min({factor, layout.width, layout.height});
    ShownImage image =
        NewImage(layout.width / reduced, layout.height / reduced, ShownChannels(layout));
    if (layout.allocatedBits == 8) {
        isFiltered ? ReduceCells<std::uint8_t>(frame, reduced, image)
                   : ReduceBlocks<std::uint8_t>(frame, reduced, image);
    } else {
        isFiltered ? ReduceCells<std::uint16_t>(frame, reduced, image)
                   : ReduceBlocks<std::uint16_t>(frame, reduced, image);
    }
    return image;
}

ShownImage ShowPart(const ServedFrame& frame, std::uint32_t x, std::uint32_t y, std::uint32_t width,
                    std::uint32_t height) {
    const ImageLayout& layout = frame.layout;
    const bool isFiltered = layout.colorCoding == MVCC_RAW_CFA;
    if (!isFiltered && layout.components == 1 && layout.bits == 8 && layout.allocatedBits == 8 &&
        width == layout.width) {
        return {width, height, 1, frame.bytes.data() + std::size_t{y} * width, {}};
    }
    // The part with what its colours depend on, as an image of its own.
    const std::uint32_t margin = isFiltered ? kFilterMargin : 0;
    const std::uint32_t left = std::min(x, margin);
    const std::uint32_t top = std::min(y, margin);
    ImageLayout part = layout;
    part.width = std::min(left + width + margin, layout.width - (x - left));
    part.height = std::min(top + height + margin, layout.height - (y - top));
    part.cfaX = (layout.cfaX + x - left) & 1;
    part.cfaY = (layout.cfaY + y - top) & 1;
    const std::size_t pixelBytes = std::size_t{layout.components} * layout.allocatedBits / 8;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(part.Size()));
    for (std::uint32_t line = 0; line < part.height; ++line) {
        std::memcpy(bytes.data() + line * part.width * pixelBytes,
                    frame.bytes.data() +
                        (std::size_t{y - top + line} * layout.width + (x - left)) * pixelBytes,
                    part.width * pixelBytes);
    }
    const Picture picture = MakePicture(part, bytes.data(), true);
    const std::uint32_t channels = picture.channels == 1 ? 1 : 3;
    ShownImage image = NewImage(width, height, channels);
    std::uint8_t* out = image.own.data();
    for (std::uint32_t line = 0; line < height; ++line) {
        const std::uint16_t* sample =
            picture.samples.data() +
            (std::size_t{top + line} * picture.width + left) * picture.channels;
        for (std::uint32_t column = 0; column < width; ++column, sample += picture.channels) {
            for (std::uint32_t channel = 0; channel < channels; ++channel) {
                *out++ = ScaleTo8Bits(sample[channel], picture.bits);
            }
        }
    }
    return image;
}
