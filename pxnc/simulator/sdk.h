// sdk.h - startup, shutdown and what every entry point does first
#pragma once

#include "platform/mutex.h"
#include "pxnc/simulator/callback_scope.h"
#include "pxnc/simulator/faults.h"
#include "pxnc/simulator/simulator.h"

#include <memory>
#include <new>
#include <string>

namespace pxsim {

/// Counts startups and owns the simulator between the first and the last.
class Sdk {
public:
    static Sdk& Instance();

    /// `configPath` is null for the default configuration.
    PxnError Startup(const wchar_t* configPath) EXCLUDES(mutex);
    void Shutdown() EXCLUDES(mutex);
    /// The running simulator, which lives at least as long as the pointer; null before startup.
    std::shared_ptr<Simulator> Current() const EXCLUDES(mutex);
    /// What the last shutdown found left over; empty when all was given back.
    std::string LastLeakReport() const EXCLUDES(mutex);

private:
    PxnError Begin(const wchar_t* configPath) REQUIRES(startStopMutex);
    PxnError RunScripts(const std::string& path, const Configuration& configuration)
        REQUIRES(startStopMutex);
    void End() REQUIRES(startStopMutex);

    platform::Mutex startStopMutex; // serialises startups and shutdowns; taken before `mutex`
    unsigned startups GUARDED_BY(startStopMutex) = 0;
    mutable platform::Mutex mutex;
    std::shared_ptr<Simulator> simulator GUARDED_BY(mutex);
    std::string leakReport GUARDED_BY(mutex);
};

/// Runs `action(simulator)` as the body of an entry point: faults first, then the check that the
/// SDK is started; no exception leaves.
template <class Action>
PxnError Call(const char* entry, Action action) noexcept {
    try {
        if (const PxnError fault = Faults::Instance().OnCall(entry); fault != PxnErrSuccess) {
            return fault;
        }
        const std::shared_ptr<Simulator> simulator = Sdk::Instance().Current();
        if (!simulator) {
            return PxnErrApiNotStarted;
        }
        return action(*simulator);
    } catch (const std::bad_alloc&) {
        return PxnErrResources;
    } catch (...) {
        return PxnErrInternalFault;
    }
}

/// The same for the entry points that take a handle: `action(simulator, target)`.
template <class Action>
PxnError CallOn(const char* entry, PxnHandle handle, Action action) noexcept {
    return Call(entry, [&](Simulator& simulator) -> PxnError {
        HandleTarget target;
        if (!simulator.Handles().Find(handle, target) || target.vanished) {
            return PxnErrBadHandle;
        }
        return action(simulator, target);
    });
}

/// For entry points that start or stop images: has whatever they have locked or unlocked told
/// before they return. No lock is held.
inline void TellFirst() {
    const std::shared_ptr<Simulator> simulator = Sdk::Instance().Current();
    if (simulator && !InsideCallback()) {
        simulator->Events().DrainPatiently();
    }
}

/// Hands a list out by the rules of all list entries: a null array with capacity 0 only counts,
/// a short array is filled as far as it goes. `fill(index, element)` writes one element.
template <class T, class Fill>
PxnError FillList(const char* entry, std::size_t count, T* array, std::uint32_t capacity,
                  std::uint32_t* found, Fill fill) {
    if (found == nullptr || (array == nullptr && capacity != 0)) {
        return PxnErrBadParameter;
    }
    const std::int64_t pretended =
        static_cast<std::int64_t>(count) + Faults::Instance().TakeCountChange(entry);
    *found = static_cast<std::uint32_t>(std::max<std::int64_t>(pretended, 0));
    for (std::uint32_t index = 0; index < capacity && index < count && index < *found; ++index) {
        fill(index, array[index]);
    }
    return array != nullptr && *found > capacity ? PxnErrMoreData : PxnErrSuccess;
}

} // namespace pxsim
