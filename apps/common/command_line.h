// command_line.h - the command lines of both programs
#pragma once

#include <CLI/CLI.hpp>

struct AppOptions;

/// Gives a program the shared options; they may stand before and after the command.
void AddAppOptions(CLI::App& app, AppOptions& options);

/// Parses the command line, runs the command and answers the program's exit status: 0 done, 1 an
/// operation failed (told on standard error), 2 bad usage. A command that has told all itself ends
/// with another status by throwing CLI::RuntimeError.
int RunApp(CLI::App& app, int argumentCount, char** arguments);
