// rate_meter.cpp - measures the rate of events
#include "apps/view/rate_meter.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kSecond = 1000000000;

} // namespace

void RateMeter::Add(std::uint64_t time) {
    times.push_back(time);
    while (time - times.front() > kSecond) {
        times.pop_front();
    }
}

double RateMeter::Rate(std::uint64_t now) const {
    const auto first = std::find_if(times.begin(), times.end(),
                                    [now](std::uint64_t time) { return now - time <= kSecond; });
    const auto count = times.end() - first;
    if (count < 2 || times.back() == *first) {
        return 0;
    }
    return static_cast<double>(count - 1) * kSecond / static_cast<double>(times.back() - *first);
}
