// clock_relation.cpp - how a camera's clock relates to this computer's
#include "apps/recording/clock_relation.h"

#include <algorithm>

namespace {

// Later ones would show how the clocks drift.
constexpr std::size_t kMostFrames = 100;
// From a frame's timestamp to its arrival.
constexpr std::int64_t kLongestWayNs = 10'000'000'000;
// Between latching the clock and the first frames the clocks drift as well.
constexpr std::int64_t kDriftNs = 1'000'000;

} // namespace

void ArrivalClock::Add(std::uint64_t timestampNs, std::uint64_t unixNs) {
    if (differences.size() < kMostFrames) {
        differences.push_back(static_cast<std::int64_t>(unixNs - timestampNs));
    }
}

std::optional<ClockRelation> ArrivalClock::Relation() const {
    if (differences.empty()) {
        return std::nullopt;
    }
    std::vector<std::int64_t> sorted = differences;
    std::sort(sorted.begin(), sorted.end());
    ClockRelation relation;
    relation.offsetNs = sorted.front();
    relation.uncertaintyNs = static_cast<std::uint64_t>(sorted[sorted.size() / 2] - sorted.front());
    relation.method = kClockByArrival;
    return relation;
}

bool ArrivalClock::Agrees(const ClockRelation& latched) const {
    const auto tolerance = static_cast<std::int64_t>(latched.uncertaintyNs) + kDriftNs;
    return std::all_of(differences.begin(), differences.end(), [&](std::int64_t difference) {
        const std::int64_t way = difference - latched.offsetNs;
        return way >= -tolerance && way <= kLongestWayNs;
    });
}
