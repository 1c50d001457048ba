// program.h - the program pyxen-tool
#pragma once

#include "apps/common/app_options.h"
#include "apps/common/command_line.h"
#include "apps/pyxen-tool/linked_maker.h"

/// The command line of pyxen-tool with all its commands.
class PyxenToolProgram {
public:
    PyxenToolProgram();
    PyxenToolProgram(const PyxenToolProgram&) = delete;
    PyxenToolProgram& operator=(const PyxenToolProgram&) = delete;

    CommandLine& Line() { return line; }
    /// Runs the command and returns the program's exit status.
    int Run(int argumentCount, char** arguments);

private:
    AppOptions options;
    LinkedMaker linked;
    CommandLine line;
};
