// app_options.h - the options that both programs share
#pragma once

#include <string>

class CommandLine;

struct AppOptions {
    std::string sdk;        ///< simulator, genicam or a directory; empty: as the environment says
    std::string module;     ///< file of the grabber module; empty: the one beside the program
    std::string configFile; ///< the host's ini file, or empty
    std::string log;        ///< file or "-", empty for none
    std::string sdkScript;  ///< script for the SDK's control interface, or empty
    std::string camera;     ///< index, unique id or name; empty: as configured, else the first
};

/// Adds the options to a program's command line.
void AddAppOptions(CommandLine& program, AppOptions& options);

/// Sets PYXEN_HOME for this process.
void ApplySdk(const std::string& sdk);
/// The grabber module to load.
std::string ModuleFile(const AppOptions& options);
