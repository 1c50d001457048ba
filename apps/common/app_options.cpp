// app_options.cpp - the options that the programs share
#include "apps/common/app_options.h"

#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "platform/environment.h"
#include "platform/file_system.h"

namespace {

/// The module or a camera SDK: beside the program, as in a build directory, or where an
/// installation has them.
std::string FindPart(const std::string& name) {
    const std::string programs = platform::DirectoryOf(platform::ExecutablePath());
    const std::string beside = platform::JoinPath(programs, name);
    const std::string installed =
        platform::JoinPath(platform::JoinPath(programs, MIVORA_PLUGINS_FROM_BIN), name);
    return platform::PathExists(beside) || !platform::PathExists(installed) ? beside : installed;
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
        home = FindPart("simulator");
    } else if (sdk == "simulator" || sdk == "genicam") {
        home = FindPart(sdk);
    }
    if (!platform::SetEnvironment("PYXEN_HOME", home)) {
        throw CommandFailure("cannot set PYXEN_HOME to " + home);
    }
}

std::string ModuleFile(const AppOptions& options) {
    return options.module.empty() ? FindPart(platform::LibraryFileName("MivoraKVNPyxen"))
                                  : options.module;
}
