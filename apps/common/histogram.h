// histogram.h - distribution of values, with percentiles
#pragma once

#include <array>
#include <cstdint>

/// Counts values in buckets whose width grows with the value: percentiles are accurate to 1 %
/// over the whole range, and memory use is constant. One thread.
class Histogram {
public:
    void Add(std::uint64_t value);

    std::uint64_t Count() const { return count; }
    std::uint64_t Sum() const { return sum; }
    /// Exact; 0 without values.
    std::uint64_t Min() const { return count ? least : 0; }
    std::uint64_t Max() const { return most; }
    /// The smallest value that at least `percent` of all values do not exceed, rounded up to the
    /// end of its bucket but never above Max. 0 without values.
    std::uint64_t Percentile(double percent) const;

    /// The values that are at most `value`, or so near to it that they share its bucket.
    std::uint64_t CountUpTo(std::uint64_t value) const;

private:
    static constexpr unsigned kFractionBits = 7;
    static constexpr std::size_t kBuckets = (64 - kFractionBits + 1) << kFractionBits;

    static std::size_t BucketOf(std::uint64_t value);
    static std::uint64_t UpperEnd(std::size_t bucket);

    std::array<std::uint64_t, kBuckets> buckets{};
    std::uint64_t count = 0;
    std::uint64_t sum = 0;
    std::uint64_t least = 0;
    std::uint64_t most = 0;
};
