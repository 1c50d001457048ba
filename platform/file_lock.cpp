// file_lock.cpp - waiting for the lock of a file
#include "platform/file_lock.h"

#include "platform/clock.h"
#include "platform/path_rules.h"
#include "platform/sleep.h"

#include <system_error>
#include <utility>

namespace platform {

namespace {

constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;
// A holder reads, writes and flushes one small file.
constexpr std::uint32_t kPollMs = 1;
// Longer than a system takes to remove a file whose last handle was closed.
constexpr std::uint64_t kUnclearLimitMs = 250;

} // namespace

bool FileLock::Acquire(const std::string& path, std::uint32_t timeoutMs, std::string* error) {
    Release();
    std::string target = path;
    const bool isResolved = FollowSymbolicLinks(target);
    lockName = target + ".lock";
    std::string reason;
    const std::uint64_t start = MonotonicNanoseconds();
    Attempt attempt = Attempt::kFailed;
    if (!isResolved) {
        reason = std::make_error_code(std::errc::too_many_symbolic_link_levels).message();
    }
    while (isResolved && (attempt = TryLock(reason)) != Attempt::kLocked) {
        const std::uint64_t waitedMs =
            (MonotonicNanoseconds() - start) / kNanosecondsPerMillisecond;
        if (attempt == Attempt::kFailed ||
            (attempt == Attempt::kPerhapsHeld && waitedMs >= kUnclearLimitMs)) {
            break;
        }
        if (waitedMs >= timeoutMs) {
            reason = "\"" + lockName + "\" has been held by another writer for " +
                     std::to_string(timeoutMs) + " ms";
            break;
        }
        SleepMs(kPollMs);
    }
    if (attempt != Attempt::kLocked && error) {
        *error = std::move(reason);
    }
    return attempt == Attempt::kLocked;
}

} // namespace platform
