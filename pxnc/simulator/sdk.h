// sdk.h - the simulator as an implementation of the SDK
#pragma once

#include "platform/mutex.h"
#include "pxnc/simulator/simulator.h"
#include "pxnc/skeleton/backend.h"

#include <memory>
#include <string>

namespace pxsim {

/// Any thread may use it.
class SimulatorSdk : public skeleton::Implementation {
public:
    PxnVersionInfo Version() override;
    PxnError Start(const wchar_t* configPath, std::shared_ptr<skeleton::Backend>& started) override
        EXCLUDES(mutex);
    PxnError OnCall(const skeleton::EntryCall& call) override;
    std::uint32_t ReportedCount(const char* entry, std::uint32_t count) override;

    /// The running simulator; null before startup. Already set while the scripts of a configuration
    /// run, before the startup returns.
    std::shared_ptr<Simulator> Current() const EXCLUDES(mutex);
    /// What had not been released at the last shutdown; empty when everything had been.
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
