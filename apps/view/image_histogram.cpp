// image_histogram.cpp - how the brightness of a picture is distributed
#include "apps/view/image_histogram.h"

#include "apps/view/display_image.h"

#include <algorithm>
#include <limits>

namespace {

ChannelHistogram Count(const Picture& picture, std::size_t channel) {
    ChannelHistogram histogram;
    if (picture.samples.empty()) {
        return histogram;
    }
    std::uint64_t sum = 0;
    histogram.min = std::numeric_limits<std::uint32_t>::max();
    for (std::size_t i = channel; i < picture.samples.size(); i += picture.channels) {
        const std::uint32_t sample = picture.samples[i];
        ++histogram.counts[ScaleTo8Bits(sample, picture.bits)];
        histogram.min = std::min(histogram.min, sample);
        histogram.max = std::max(histogram.max, sample);
        sum += sample;
    }
    const std::size_t count = picture.samples.size() / picture.channels;
    histogram.mean = static_cast<double>(sum) / static_cast<double>(count);
    return histogram;
}

} // namespace

std::vector<ChannelHistogram> MakeImageHistogram(const Picture& picture) {
    std::vector<ChannelHistogram> channels(std::min<std::size_t>(picture.channels, 3));
    for (std::size_t i = 0; i < channels.size(); ++i) {
        channels[i] = Count(picture, i);
    }
    return channels;
}
