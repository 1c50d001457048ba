// app_options.h - the options that both programs share
#pragma once

#include <CLI/CLI.hpp>

#include <string>

struct AppOptions {
    std::string sdk;        ///< simulator, genicam or a directory; empty: as the environment says
    std::string module;     ///< file of the grabber module; empty: the one beside the program
    std::string configFile; ///< the host's ini file, or empty
    std::string log;        ///< file or "-", empty for none
    std::string camera;     ///< index, unique id or name; empty: as configured, else the first
};

/// Gives a program the shared options; they may stand before and after the command.
void AddAppOptions(CLI::App& app, AppOptions& options);
/// Sets PYXEN_HOME for this process.
void ApplySdk(const std::string& sdk);
/// The grabber module to load.
std::string ModuleFile(const AppOptions& options);

/// Parses the command line, runs the command and answers the program's exit status: 0 done, 1 an
/// operation failed (told on standard error), 2 bad usage. A command that has told all itself ends
/// with another status by throwing CLI::RuntimeError.
int RunApp(CLI::App& app, int argumentCount, char** arguments);
