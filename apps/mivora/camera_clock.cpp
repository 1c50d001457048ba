// camera_clock.cpp - compares the clock of a camera with this computer's
#include "apps/mivora/camera_clock.h"

#include "apps/common/command_failure.h"
#include "apps/common/service_client.h"
#include "platform/clock.h"

#include <string>

namespace {

constexpr int kTimes = 8;
constexpr std::uint32_t kCommandTimeoutMs = 1000;
constexpr double kNanosecondsPerSecond = 1e9;
constexpr const char* kClockOwner = "Camera";

/// The features by which a camera shows its clock.
struct LatchFeatures {
    const char* command;
    const char* value;
    const char* frequency; ///< ticks of the value per second; null: it counts nanoseconds
};

constexpr LatchFeatures kLatches[] = {
    {"TimestampLatch", "TimestampLatchValue", nullptr},
    {"GevTimestampControlLatch", "GevTimestampValue", "GevTimestampTickFrequency"},
};

/// Nanoseconds for each tick of the value; empty when that is not known.
std::optional<double> TickNs(ServiceClient& services, const LatchFeatures& latch) {
    if (!latch.frequency) {
        return 1.0;
    }
    const std::optional<ServiceValue> frequency =
        services.TryReadFeature(kClockOwner, latch.frequency);
    return frequency && frequency->integer > 0
               ? std::optional(kNanosecondsPerSecond / static_cast<double>(frequency->integer))
               : std::nullopt;
}

std::optional<ClockRelation> Latch(ServiceClient& services, const LatchFeatures& latch,
                                   double tickNs, std::uint64_t unixMinusHostNs) {
    const std::uint64_t before = platform::MonotonicNanoseconds();
    services.RunCommand(kClockOwner, latch.command, kCommandTimeoutMs);
    const std::uint64_t took = platform::MonotonicNanoseconds() - before;
    const std::optional<ServiceValue> value = services.TryReadFeature(kClockOwner, latch.value);
    if (!value) {
        return std::nullopt;
    }
    // Exact where ticks are nanoseconds: the value may have more digits than a double.
    const std::int64_t timestamp =
        latch.frequency ? static_cast<std::int64_t>(static_cast<double>(value->integer) * tickNs)
                        : value->integer;
    ClockRelation relation;
    relation.offsetNs = static_cast<std::int64_t>(before + took / 2 + unixMinusHostNs) - timestamp;
    relation.uncertaintyNs = took - took / 2 + static_cast<std::uint64_t>(tickNs);
    relation.method = latch.command;
    return relation;
}

} // namespace

std::optional<ClockRelation> LatchCameraClock(ServiceClient& services,
                                              std::uint64_t unixMinusHostNs) {
    std::optional<ClockRelation> best;
    for (const LatchFeatures& latch : kLatches) {
        if (!services.TryDescribeFeature(kClockOwner, latch.command)) {
            continue;
        }
        const std::optional<double> tickNs = TickNs(services, latch);
        try {
            for (int i = 0; tickNs && i < kTimes; ++i) {
                const std::optional<ClockRelation> relation =
                    Latch(services, latch, *tickNs, unixMinusHostNs);
                if (relation && (!best || relation->uncertaintyNs < best->uncertaintyNs)) {
                    best = relation;
                }
            }
        } catch (const CommandFailure&) {
            // A command that the camera does not take at present.
        }
        if (best) {
            break;
        }
    }
    return best;
}
