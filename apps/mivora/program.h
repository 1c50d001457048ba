// program.h - the program mivora
#pragma once

#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/common/module_maker.h"

/// The command line of mivora with all its commands.
class MivoraProgram {
public:
    MivoraProgram();
    MivoraProgram(const MivoraProgram&) = delete;
    MivoraProgram& operator=(const MivoraProgram&) = delete;

    CommandLine& Line() { return line; }
    /// Runs the command and returns the program's exit status.
    int Run(int argumentCount, char** arguments);

private:
    AppOptions options;
    ModuleMaker modules;
    CommandLine line;
};
