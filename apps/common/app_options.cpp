// app_options.cpp - the options that the programs share
#include "apps/common/app_options.h"

#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "platform/environment.h"
#include "platform/file_system.h"

namespace {

std::string BesideProgram(const std::string& name) {
    return platform::JoinPath(platform::DirectoryOf(platform::ExecutablePath()), name);
}

} // namespace

void AddAppOptions(CommandLine& program, AppOptions& options) {
    program
        .AddOption("--sdk", options.sdk,
                   "Camera SDK: simulator, genicam, or a directory that has the SDK's library in "
                   "its subdirectory Bin. Default: PYXEN_HOME of the environment, else simulator")
        .TypeName("simulator|genicam|DIR");
    program
        .AddOption("--sdk-script", options.sdkScript,
                   "Run the lines of a file on the SDK's control interface before the grabber is "
                   "initialised: faults on demand, when the SDK has them (docs/simulator.md)")
        .TypeName("FILE");
    program
        .AddOption("--module", options.module,
                   "Grabber module that mivora loads. Default: the one beside it. pyxen-tool has "
                   "the module linked in and does not look at this")
        .TypeName("FILE");
    program
        .AddOption("--config", options.configFile,
                   "The host's configuration file. Its directory is also where the SDK's PxnC.xml "
                   "and feature synchronisation files are looked for")
        .TypeName("FILE.ini");
    program
        .AddOption("--log", options.log,
                   "Write log lines as LEVEL TEXT to a file, or with - to standard error")
        .TypeName("FILE|-");
    program
        .AddOption("--camera", options.camera,
                   "Camera to use: its index, its unique id (decimal or 0x...) or its name. "
                   "Default: the configured one, else the first. The shell does not look at it")
        .TypeName("N|ID");
}

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
