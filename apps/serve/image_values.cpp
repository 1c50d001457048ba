// image_values.cpp - the true values of a frame
#include "apps/serve/image_values.h"

#include "apps/common/picture.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

template <typename Sample>
void CountSamples(const ServedFrame& frame, unsigned shift, ValueHistogram& histogram) {
    const ImageLayout& layout = frame.layout;
    const auto* sample = reinterpret_cast<const Sample*>(frame.bytes.data());
    const std::array<std::uint32_t, 4> order = ChannelOrder(layout.colorCoding);
    const std::uint32_t most = (1u << layout.bits) - 1;
    const std::size_t channels = histogram.channels.size();
    const std::size_t pixels = std::size_t{layout.width} * layout.height;
    for (std::size_t pixel = 0; pixel < pixels; ++pixel, sample += layout.components) {
        bool isSaturated = false;
        for (std::size_t channel = 0; channel < channels; ++channel) {
            const std::uint32_t value = sample[order[channel]] & most;
            ++histogram.channels[channel][value >> shift];
            isSaturated = isSaturated || value == most;
        }
        histogram.saturated += isSaturated ? 1 : 0;
    }
}

} // namespace

std::vector<std::uint32_t> PixelValues(const ServedFrame& frame, std::uint32_t x, std::uint32_t y) {
    const ImageReader reader(frame.layout, frame.bytes.data());
    const std::array<std::uint32_t, 4> order = ChannelOrder(frame.layout.colorCoding);
    std::vector<std::uint32_t> values;
    for (std::uint32_t channel = 0; channel < frame.layout.components; ++channel) {
        values.push_back(reader.At(x, y, order[channel]));
    }
    return values;
}

ValueHistogram CountValues(const ServedFrame& frame, std::uint32_t bins) {
    const ImageLayout& layout = frame.layout;
    const auto binBits = std::min<unsigned>(std::bit_width(bins) - 1u, layout.bits);
    ValueHistogram histogram;
    histogram.channels.assign(std::min<std::uint32_t>(layout.components, 3),
                              std::vector<std::uint64_t>(std::size_t{1} << binBits));
    const unsigned shift = layout.bits - binBits;
    if (layout.allocatedBits == 8) {
        CountSamples<std::uint8_t>(frame, shift, histogram);
    } else {
        CountSamples<std::uint16_t>(frame, shift, histogram);
    }
    return histogram;
}

std::vector<std::vector<std::uint32_t>> LineValues(const ServedFrame& frame, std::uint32_t x1,
                                                   std::uint32_t y1, std::uint32_t x2,
                                                   std::uint32_t y2) {
    const double across = static_cast<double>(x2) - x1;
    const double down = static_cast<double>(y2) - y1;
    const auto steps = static_cast<std::uint32_t>(std::max(std::abs(across), std::abs(down)));
    std::vector<std::vector<std::uint32_t>> channels(frame.layout.components);
    for (std::uint32_t step = 0; step <= steps; ++step) {
        const double part = steps == 0 ? 0 : static_cast<double>(step) / steps;
        const auto x = static_cast<std::uint32_t>(std::lround(x1 + part * across));
        const auto y = static_cast<std::uint32_t>(std::lround(y1 + part * down));
        const std::vector<std::uint32_t> values = PixelValues(frame, x, y);
        for (std::size_t channel = 0; channel < values.size(); ++channel) {
            channels[channel].push_back(values[channel]);
        }
    }
    return channels;
}
