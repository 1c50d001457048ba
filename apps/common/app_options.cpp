// app_options.cpp - the options that both programs share
#include "apps/common/app_options.h"

#include "apps/common/command_failure.h"
#include "platform/environment.h"
#include "platform/file_system.h"

namespace {

std::string BesideProgram(const std::string& name) {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), name);
}

} // namespace

void ApplySdk(const std::string& sdk) {
    std::string home = sdk;
    if (sdk.empty()) {
        if (!platform::GetEnvironment("PYXEN_HOME").empty()) {
            return;
        }
        home = BesideProgram("simulator");
    } else if (sdk == "simulator" || sdk == "genicam") {
        home = BesideProgram(sdk);
    }
    if (!platform::SetEnvironment("PYXEN_HOME", home)) {
        throw CommandFailure("cannot set PYXEN_HOME to " + home);
    }
}

std::string ModuleFile(const AppOptions& options) {
    return options.module.empty() ? BesideProgram(platform::LibraryFileName("MivoraKVNPyxen"))
                                  : options.module;
}
