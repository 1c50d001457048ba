// sdk.h - the simulator as an implementation of the SDK
#pragma once

#include "platform/mutex.h"
#include "pxnc/simulator/simulator.h"
#include "pxnc/skeleton/backend.h"

#include <memory>
#include <string>

namespace pxsim {

/// Any thread.
class SimulatorSdk : public skeleton::Implementation {
public:
    PxnVersionInfo Version() override;
    PxnError Start(const wchar_t* configPath, std::shared_ptr<skeleton::Backend>& started) override
        EXCLUDES(mutex);
    PxnError OnCall(const skeleton::EntryCall& call) override;
    std::uint32_t ReportedCount(const char* entry, std::uint32_t count) override;

    /// The running simulator; null before startup. The scripts of a configuration find it while
    /// they run, though the startup has not returned.
    std::shared_ptr<Simulator> Current() const EXCLUDES(mutex);
    /// What the last shutdown found left over; empty when everything was given back.
    std::string LastLeakReport() const EXCLUDES(mutex);
    /// The simulator is about to stop.
    void OnStop(Simulator& simulator) EXCLUDES(mutex);

private:
    mutable platform::Mutex mutex;
    std::weak_ptr<Simulator> current GUARDED_BY(mutex);
    std::string leakReport GUARDED_BY(mutex);
};

SimulatorSdk& TheSdk();

} // namespace pxsim
