// app_options.h - the options that the programs share
#pragma once

#include <string>

class CommandLine;

struct AppOptions {
    std::string sdk;    ///< simulator, genicam or a directory; empty: PYXEN_HOME, else simulator
    std::string module; ///< file of the grabber module; empty: the one beside the program
    std::string configFile; ///< the host's ini file, or empty
    std::string log;        ///< file or "-", empty for none
    std::string sdkScript;  ///< script for the SDK's control interface, or empty
    std::string camera;     ///< index, unique id or name; empty: as configured, else the first
};

/// Adds the options to a program's command line.
void AddAppOptions(CommandLine& program, AppOptions& options);

/// Sets PYXEN_HOME of this process for the value of --sdk. Throws CommandFailure.
void ApplySdk(const std::string& sdk);
/// The grabber module to load.
std::string ModuleFile(const AppOptions& options);
