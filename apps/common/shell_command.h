// shell_command.h - the command "shell" of both programs
#pragma once

#include <functional>

class CommandLine;
class IGrabberMaker;
class ShellOperations;
struct AppOptions;
struct ShellContext;

/// Adds the command "shell" to a program. `maker` returns the grabber maker; `addOwn`, if given,
/// adds the program's own operations to those that every grabber has.
void AddShellCommand(
    CommandLine& program, const AppOptions& options, const std::function<IGrabberMaker&()>& maker,
    const std::function<void(ShellOperations&, const ShellContext&)>& addOwn = nullptr);
