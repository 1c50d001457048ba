#include "pxnc/simulator/sdk.h"

#include "pxnc/simulator/callback_scope.h"
#include "pxnc/simulator/never_destroyed.h"

#include <cstdio>

namespace pxsim {

Sdk& Sdk::Instance() {
    static NeverDestroyed<Sdk> instance;
    return instance.Get();
}

PxnError Sdk::Startup(const wchar_t* configPath) {
    platform::MutexLock serialise(startStopMutex);
    if (startups == 0) {
        if (const PxnError result = Begin(configPath); result != PxnErrSuccess) {
            return result;
        }
    }
    ++startups;
    return PxnErrSuccess;
}

PxnError Sdk::Begin(const wchar_t* configPath) {
    (void)configPath;
    auto started = std::make_shared<Simulator>(DefaultConfiguration());
    if (!started->Start()) {
        return PxnErrResources;
    }
    platform::MutexLock lock(mutex);
    simulator = std::move(started);
    leakReport.clear();
    return PxnErrSuccess;
}

void Sdk::Shutdown() {
    if (InsideFrameCallback()) {
        std::fputs("PxnShutdown: ignored inside a frame callback\n", stderr);
        return;
    }
    platform::MutexLock serialise(startStopMutex);
    if (startups == 0 || --startups > 0) {
        return;
    }
    std::shared_ptr<Simulator> last;
    {
        platform::MutexLock lock(mutex);
        last = std::move(simulator);
        simulator = nullptr;
        leakReport = last->LeakReport();
        if (!leakReport.empty()) {
            std::fprintf(stderr, "PxnShutdown: %s\n", leakReport.c_str());
        }
    }
    last->Stop();
}

std::shared_ptr<Simulator> Sdk::Current() const {
    platform::MutexLock lock(mutex);
    return simulator;
}

std::string Sdk::LastLeakReport() const {
    platform::MutexLock lock(mutex);
    return leakReport;
}

} // namespace pxsim
