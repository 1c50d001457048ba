// request_rate.h - how many requests may come
#pragma once

#include "platform/mutex.h"

#include <cstdint>

/// Takes so many requests a second in the long run, and for a short time twice as many. Any thread.
class RequestRate {
public:
    explicit RequestRate(std::uint32_t requestsPerSecond);
    /// False when it is one too many.
    bool Take();
    /// The same at a given monotonic time.
    bool TakeAt(std::uint64_t now);

private:
    const std::uint64_t nsPerRequest;
    const std::uint64_t mostSavedNs;
    platform::Mutex mutex;
    std::uint64_t paidUntil GUARDED_BY(mutex) = 0; // when all requests so far would have come
};
