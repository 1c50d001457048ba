// command_line.h - the command lines of both programs
#pragma once

#include <CLI/CLI.hpp>

#include <string>

struct AppOptions;

/// Gives a program the shared options; they may stand before and after the command.
void AddAppOptions(CLI::App& app, AppOptions& options);

/// What is wrong with a text as a count, empty when nothing is: for options that take one. By
/// itself the library takes -1 for the largest number.
std::string CountProblem(const std::string& text);
/// The same for a count that must not be 0.
std::string PositiveCountProblem(const std::string& text);

/// Parses the command line, runs the command and answers the program's exit status: 0 done, 1 an
/// operation failed (told on standard error) or the output could not be written, 2 bad usage. A
/// command that has told all itself ends with another status by throwing CLI::RuntimeError.
int RunApp(CLI::App& app, int argumentCount, char** arguments);
