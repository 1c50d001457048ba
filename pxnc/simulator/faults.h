// faults.h - faults on demand
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"
#include "pxnc/skeleton/condition.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace pxsim {

/// What happens to one frame.
enum class FrameFault {
    kNone,
    kIncomplete, // the last lines are missing
    kTooSmall,   // reported as if the buffer were too small
    kLate,       // handed back kLateMs later
    kDropped,    // never handed back
    kDuplicate,  // sent twice under one number
};

inline constexpr std::uint32_t kLateMs = 50;

/// The faults of this process. They persist across shutdown, so that a startup can be made to fail.
/// Any thread.
class Faults {
public:
    static Faults& Instance();

    /// Called first by every entry point. Runs the lines set for this call and waits for delays and
    /// while the entry is stuck. The entry returns the result unless it is PxnErrSuccess.
    PxnError OnCall(const char* entry) EXCLUDES(mutex);
    /// By how many items the next list of this entry is reported longer (or shorter), once.
    std::int64_t TakeCountChange(const char* entry) EXCLUDES(mutex);
    FrameFault OnFrame(std::uint64_t frame) EXCLUDES(mutex);

    struct ScheduledPlug {
        std::uint64_t frame;
        bool plug;
        std::string id; // empty: the camera that sends the frame
    };
    /// Removes and returns what is due at this frame.
    std::vector<ScheduledPlug> TakeScheduled(std::uint64_t frame) EXCLUDES(mutex);
    bool HasScheduled() const { return scheduledCount != 0; }

    /// `entry` is the name of an entry point, or "any".
    void FailCall(const std::string& entry, std::uint64_t call, PxnError code) EXCLUDES(mutex);
    void FailAlways(const std::string& entry, PxnError code) EXCLUDES(mutex);
    /// Runs a line of the control interface when that call begins, on the caller's thread.
    void RunAtCall(const std::string& entry, std::uint64_t call, const std::string& line)
        EXCLUDES(mutex);
    void Delay(const std::string& entry, std::uint32_t milliseconds) EXCLUDES(mutex);
    void Stick(const std::string& entry) EXCLUDES(mutex);
    void ChangeCount(const std::string& entry, std::int64_t by) EXCLUDES(mutex);
    void SetFrameFault(FrameFault fault, std::uint64_t frame) EXCLUDES(mutex);
    void SetRandomFrames(std::uint32_t seed, unsigned percent, FrameFault fault) EXCLUDES(mutex);
    void Schedule(ScheduledPlug plug) EXCLUDES(mutex);
    /// Removes all faults; stuck calls continue.
    void Clear() EXCLUDES(mutex);

    /// Calls of all entry points so far.
    std::uint64_t CallCount() const { return calls; }

private:
    struct CallFault {
        std::string entry;
        bool always;
        std::uint64_t remaining; // calls until it takes effect; 0: used up
        PxnError code;
    };

    struct CallLine {
        std::string entry;
        std::uint64_t remaining; // calls until it runs
        std::string line;
    };

    PxnError Strike(const char* entry) REQUIRES(mutex);
    void RunLinesAtCall(const char* entry) EXCLUDES(mutex);

    std::atomic<std::uint64_t> calls = 0;
    std::atomic<bool> armed = false; // any fault on calls
    std::atomic<bool> frameFaultsArmed = false;
    std::atomic<std::size_t> scheduledCount = 0;

    platform::Mutex mutex;
    skeleton::Condition changed;
    std::vector<CallFault> callFaults GUARDED_BY(mutex);
    std::vector<CallLine> callLines GUARDED_BY(mutex);
    std::map<std::string, std::uint32_t> delays GUARDED_BY(mutex);
    std::set<std::string> stuck GUARDED_BY(mutex);
    std::map<std::string, std::int64_t> countChanges GUARDED_BY(mutex);
    std::map<std::uint64_t, FrameFault> frameFaults GUARDED_BY(mutex);
    std::vector<ScheduledPlug> scheduled GUARDED_BY(mutex);
    std::minstd_rand random GUARDED_BY(mutex);
    unsigned randomPercent GUARDED_BY(mutex) = 0;
    FrameFault randomFault GUARDED_BY(mutex) = FrameFault::kNone;
};

} // namespace pxsim
