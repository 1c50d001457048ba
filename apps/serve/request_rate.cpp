// request_rate.cpp - how many requests may come
#include "apps/serve/request_rate.h"

#include "platform/clock.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kNsPerSecond = 1000000000;
constexpr std::uint64_t kBurstSeconds = 2;

} // namespace

RequestRate::RequestRate(std::uint32_t requestsPerSecond)
    : nsPerRequest(kNsPerSecond / std::max<std::uint32_t>(requestsPerSecond, 1)),
      mostSavedNs(kBurstSeconds * kNsPerSecond) {}

bool RequestRate::Take() {
    return TakeAt(platform::MonotonicNanoseconds());
}

bool RequestRate::TakeAt(std::uint64_t now) {
    const platform::MutexLock lock(mutex);
    paidUntil = std::max(paidUntil, now - std::min(now, mostSavedNs));
    if (paidUntil > now) {
        return false;
    }
    paidUntil += nsPerRequest;
    return true;
}
