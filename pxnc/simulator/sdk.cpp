#include "pxnc/simulator/sdk.h"

#include "platform/text.h"
#include "pxnc/simulator/callback_scope.h"
#include "pxnc/simulator/configuration_reader.h"
#include "pxnc/simulator/never_destroyed.h"
#include "pxnc/simulator/script.h"

#include <cstdio>

namespace pxsim {
namespace {

void Complain(const std::string& message) {
    std::fprintf(stderr, "PxnC: %s\n", message.c_str());
}

} // namespace

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
    Configuration configuration = DefaultConfiguration();
    std::string path;
    if (configPath != nullptr) {
        path = platform::WideToNarrow(configPath);
        const ConfigurationError error = ReadConfigurationFile(path, configuration);
        if (error.code != PxnErrSuccess) {
            Complain(error.message);
            return error.code;
        }
    }
    auto started = std::make_shared<Simulator>(configuration);
    if (const Setting* problem = started->FirstProblem(); problem != nullptr) {
        Complain(path + ":" + std::to_string(problem->line) + ": camera " + problem->name + ": " +
                 problem->value);
        return PxnErrXml;
    }
    if (!started->Start()) {
        return PxnErrResources;
    }
    {
        platform::MutexLock lock(mutex);
        simulator = std::move(started);
        leakReport.clear();
    }
    const PxnError result = RunScripts(path, configuration);
    if (result != PxnErrSuccess) {
        End();
    }
    return result;
}

PxnError Sdk::RunScripts(const std::string& path, const Configuration& configuration) {
    for (const Setting& script : configuration.script) {
        std::string answer;
        if (RunScript(script.name, path, script.line, answer) != PxnErrSuccess) {
            Complain(answer);
            return PxnErrXml;
        }
    }
    return PxnErrSuccess;
}

void Sdk::Shutdown() {
    if (InsideCallback()) {
        Complain("ignored inside a callback");
        return;
    }
    platform::MutexLock serialise(startStopMutex);
    if (startups > 0 && --startups == 0) {
        End();
    }
}

void Sdk::End() {
    Current()->Delayed().Stop(); // a line that runs still finds the SDK started
    std::shared_ptr<Simulator> last;
    {
        platform::MutexLock lock(mutex);
        last = std::move(simulator);
        simulator = nullptr;
        leakReport = last->LeakReport();
        if (!leakReport.empty()) {
            Complain(leakReport);
        }
    }
    last->Stop();
    if (!last->Setup().script.empty()) {
        Faults::Instance().Clear(); // the next startup brings its own
    }
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
