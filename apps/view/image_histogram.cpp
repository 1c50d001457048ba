// image_histogram.cpp - brightness histogram of a picture
#include "apps/view/image_histogram.h"

#include "apps/view/display_image.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace {

// At most one in this many of the used bins is cut off.
constexpr std::ptrdiff_t kBinsForEachSpike = 50;

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

HistogramBars::HistogramBars(const ChannelHistogram& histogram, int plotHeight)
    : shown(histogram), height(plotHeight) {
    auto counts = histogram.counts;
    const std::ptrdiff_t used = std::ssize(counts) - std::count(counts.begin(), counts.end(), 0u);
    if (used > 0) {
        const auto highest = counts.begin() + used / kBinsForEachSpike;
        std::nth_element(counts.begin(), highest, counts.end(), std::greater<>());
        top = *highest;
    }
}

int HistogramBars::Height(std::size_t bin) const {
    const std::uint32_t count = std::min(shown.counts[bin], top);
    if (count == 0) {
        return 0;
    }
    const double share = std::sqrt(static_cast<double>(count) / top);
    // Every value that occurs is visible.
    return std::min(height, std::max(1, static_cast<int>(std::lround(share * height))));
}

std::vector<ChannelHistogram> MakeImageHistogram(const Picture& picture) {
    std::vector<ChannelHistogram> channels(std::min<std::size_t>(picture.channels, 3));
    for (std::size_t i = 0; i < channels.size(); ++i) {
        channels[i] = Count(picture, i);
    }
    return channels;
}
