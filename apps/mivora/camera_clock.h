// camera_clock.h - compares the clock of a camera with this computer's
#pragma once

#include "apps/recording/clock_relation.h"

#include <cstdint>
#include <optional>

class ServiceClient;

/// Latches the clock of the open camera several times and takes the time that was known best.
/// `unixMinusHostNs` leads from platform::MonotonicNanoseconds to nanoseconds since 1970. Empty
/// when the camera has no such command.
std::optional<ClockRelation> LatchCameraClock(ServiceClient& services,
                                              std::uint64_t unixMinusHostNs);
