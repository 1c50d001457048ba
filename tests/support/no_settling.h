// no_settling.h - the product's pauses taken out for a scope
#pragma once

#include "platform/sleep.h"

namespace support {

/// The pauses after a stop are long; who does not test them does without.
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
