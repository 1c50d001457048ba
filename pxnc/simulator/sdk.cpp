// sdk.cpp - the simulator as an implementation of the SDK
#include "pxnc/simulator/sdk.h"

#include "platform/printable_text.h"
#include "platform/text.h"
#include "pxnc/simulator/configuration_reader.h"
#include "pxnc/simulator/faults.h"
#include "pxnc/simulator/script.h"
#include "pxnc/skeleton/never_destroyed.h"

#include <algorithm>
#include <cstdio>

namespace pxsim {
namespace {

constexpr PxnVersionInfo kVersion = {1, 4, 0};

void Report(const std::string& message) {
    std::fprintf(stderr, "PxnC: %s\n", platform::PrintableText(message).c_str());
}

PxnError RunScripts(const std::string& path, const Configuration& configuration) {
    for (const Setting& script : configuration.script) {
        std::string answer;
        if (RunScript(script.name, path, script.line, answer) != PxnErrSuccess) {
            Report(answer);
            return PxnErrXml;
        }
    }
    std::string answer;
    const std::int32_t result = RunWaitingLines(answer);
    if (result != PxnErrSuccess) {
        Report(answer);
    }
    return static_cast<PxnError>(result);
}

} // namespace

SimulatorSdk& TheSdk() {
    static skeleton::NeverDestroyed<SimulatorSdk> sdk;
    return sdk.Get();
}

PxnVersionInfo SimulatorSdk::Version() {
    return kVersion;
}

PxnError SimulatorSdk::Start(const wchar_t* configPath,
                             std::shared_ptr<skeleton::Backend>& started) {
    Configuration configuration = DefaultConfiguration();
    std::string path;
    if (configPath) {
        path = platform::WideToNarrow(configPath);
        const ConfigurationError error = ReadConfigurationFile(path, configuration);
        if (error.code != PxnErrSuccess) {
            Report(error.message);
            return error.code;
        }
    }
    const auto simulator = std::make_shared<Simulator>(configuration);
    if (const Setting* problem = simulator->FirstProblem()) {
        Report(path + ":" + std::to_string(problem->line) + ": camera " + problem->name + ": " +
               problem->value);
        return PxnErrXml;
    }
    if (!simulator->Start()) {
        return PxnErrResources;
    }
    {
        platform::MutexLock lock(mutex);
        current = simulator;
        leakReport.clear();
    }
    const PxnError result = RunScripts(path, configuration);
    if (result == PxnErrSuccess) {
        started = simulator;
    } else {
        simulator->Stop();
    }
    return result;
}

PxnError SimulatorSdk::OnCall(const skeleton::EntryCall& call) {
    return Faults::Instance().OnCall(call.entry);
}

std::uint32_t SimulatorSdk::ReportedCount(const char* entry, std::uint32_t count) {
    const std::int64_t reported = count + Faults::Instance().TakeCountChange(entry);
    return static_cast<std::uint32_t>(std::max<std::int64_t>(reported, 0));
}

std::shared_ptr<Simulator> SimulatorSdk::Current() const {
    platform::MutexLock lock(mutex);
    return current.lock();
}

std::string SimulatorSdk::LastLeakReport() const {
    platform::MutexLock lock(mutex);
    return leakReport;
}

void SimulatorSdk::OnStop(Simulator& simulator) {
    std::string report = simulator.LeakReport();
    if (!report.empty()) {
        Report(report);
    }
    if (!simulator.Setup().script.empty()) {
        Faults::Instance().Clear(); // the next startup sets its own
    }
    platform::MutexLock lock(mutex);
    leakReport = std::move(report);
    current.reset();
}

} // namespace pxsim

skeleton::Implementation& skeleton::TheImplementation() {
    return pxsim::TheSdk();
}
