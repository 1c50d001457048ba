// histogram.cpp - distribution of values, with percentiles
#include "apps/common/histogram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

// Values below 2^kFractionBits have one bucket each. Above that, every power of two is divided into
// 2^kFractionBits buckets of equal width.
std::size_t Histogram::BucketOf(std::uint64_t value) {
    const auto width = static_cast<unsigned>(std::bit_width(value));
    if (width <= kFractionBits) {
        return static_cast<std::size_t>(value);
    }
    const unsigned shift = width - 1 - kFractionBits;
    const std::uint64_t fraction = (value >> shift) - (std::uint64_t{1} << kFractionBits);
    return (std::size_t{shift + 1} << kFractionBits) + static_cast<std::size_t>(fraction);
}

std::uint64_t Histogram::UpperEnd(std::size_t bucket) {
    const std::size_t octave = bucket >> kFractionBits;
    const std::uint64_t fraction = bucket & ((std::size_t{1} << kFractionBits) - 1);
    if (octave == 0) {
        return fraction;
    }
    const std::uint64_t lower = (fraction + (std::uint64_t{1} << kFractionBits)) << (octave - 1);
    return lower + ((std::uint64_t{1} << (octave - 1)) - 1);
}

void Histogram::Add(std::uint64_t value) {
    ++buckets[BucketOf(value)];
    least = count ? std::min(least, value) : value;
    most = std::max(most, value);
    sum += value;
    ++count;
}

std::uint64_t Histogram::Percentile(double percent) const {
    if (count == 0) {
        return 0;
    }
    const double share = std::clamp(percent, 0.0, 100.0) / 100.0;
    const double wanted = std::max(1.0, std::ceil(share * static_cast<double>(count)));
    std::uint64_t seen = 0;
    for (std::size_t bucket = 0; bucket < kBuckets; ++bucket) {
        seen += buckets[bucket];
        if (static_cast<double>(seen) >= wanted) {
            return std::min(UpperEnd(bucket), most);
        }
    }
    return most;
}

std::uint64_t Histogram::CountUpTo(std::uint64_t value) const {
    const auto end = buckets.begin() + static_cast<std::ptrdiff_t>(BucketOf(value) + 1);
    return std::accumulate(buckets.begin(), end, std::uint64_t{0});
}
