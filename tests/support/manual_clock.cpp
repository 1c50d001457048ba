// manual_clock.cpp - a clock that the test advances
#include "tests/support/manual_clock.h"

#include "platform/clock.h"

#include <atomic>

namespace support {
namespace {

constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;

// The replacement is a plain function, so its state is kept here.
std::atomic<std::uint64_t> manualNanoseconds{0};
std::atomic<std::uint64_t> readings{0};

std::uint64_t ReadManualClock() {
    ++readings;
    return manualNanoseconds;
}

} // namespace

ManualClock::ManualClock() {
    manualNanoseconds = platform::MonotonicNanoseconds();
    readings = 0;
    platform::SetClockFunction(&ReadManualClock);
}

ManualClock::~ManualClock() {
    platform::SetClockFunction(nullptr);
}

void ManualClock::Advance(std::uint64_t milliseconds) {
    manualNanoseconds += milliseconds * kNanosecondsPerMillisecond;
}

std::uint64_t ManualClock::Readings() const {
    return readings;
}

} // namespace support
