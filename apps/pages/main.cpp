// main.cpp - writes the manual pages of the programs and what completes their command lines
#include "apps/common/command_failure.h"
#include "apps/common/whole_file.h"
#include "apps/mivora/program.h"
#include "apps/pages/bash_completion.h"
#include "apps/pages/man_page.h"
#include "apps/pyxen-tool/program.h"
#include "mivora/version.h"
#include "platform/file_system.h"

#include <cstdio>
#include <exception>
#include <string>

namespace {

void WritePages(const std::string& directory, const CommandDescription& program) {
    WriteWholeFile(platform::JoinPath(directory, program.name + ".1"),
                   ManPage(program, std::string("Mivora ") + MivoraHostVersion()));
    WriteWholeFile(platform::JoinPath(directory, program.name + ".bash"), BashCompletion(program));
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: program_pages DIRECTORY\n");
        return 2;
    }
    try {
        WritePages(arguments[1], MivoraProgram().Line().Describe());
        WritePages(arguments[1], PyxenToolProgram().Line().Describe());
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "program_pages: %s\n", failure.what());
        return 1;
    }
}
