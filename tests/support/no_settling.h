// no_settling.h - skipping the product's pauses for a scope
#pragma once

#include "platform/sleep.h"

namespace support {

/// Makes platform::SleepMs return at once. The pauses after a stop are long, and most tests do not
/// depend on them.
class NoSettling {
public:
    NoSettling() {
        platform::SetSleepFunction([](std::uint32_t) {});
    }
    ~NoSettling() { platform::SetSleepFunction(nullptr); }
    NoSettling(const NoSettling&) = delete;
    NoSettling& operator=(const NoSettling&) = delete;
};

} // namespace support
