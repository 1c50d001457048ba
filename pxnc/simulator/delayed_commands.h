// delayed_commands.h - lines of the control interface that run later
#pragma once

#include "platform/mutex.h"
#include "platform/thread.h"
#include "pxnc/skeleton/condition.h"

#include <cstdint>
#include <map>
#include <string>

namespace pxsim {

/// Runs lines when they are due, on a thread of its own that the first line starts. Refusals are
/// written to standard error. Any thread may use it.
class DelayedCommands {
public:
    DelayedCommands() = default;
    ~DelayedCommands();
    DelayedCommands(const DelayedCommands&) = delete;
    DelayedCommands& operator=(const DelayedCommands&) = delete;

    /// False when it has been stopped or no thread can be started.
    bool Add(std::uint64_t delayMs, const std::string& line) EXCLUDES(mutex);
    /// Waits until all due lines have run; does not wait on the thread that runs them.
    void WaitForDueLines() EXCLUDES(mutex);
    /// Discards the lines that have not run yet.
    void Clear() EXCLUDES(mutex);
    /// Discards the lines that have not run yet, waits for a running line and ends the thread.
    void Stop() EXCLUDES(mutex);

private:
    static void ThreadProcedure(void* self);
    void Run() EXCLUDES(mutex);

    platform::Mutex mutex;
    skeleton::Condition changed;
    platform::Thread thread GUARDED_BY(mutex);
    std::multimap<skeleton::Clock::time_point, std::string> lines GUARDED_BY(mutex);
    bool runningLine GUARDED_BY(mutex) = false;
    bool ending GUARDED_BY(mutex) = false;
};

} // namespace pxsim
