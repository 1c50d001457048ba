// main.cpp - mivora, a host application for the command line
#include "apps/common/guarded_main.h"
#include "apps/mivora/program.h"

int main(int argumentCount, char** arguments) {
    return GuardedMain("mivora", [&] { return MivoraProgram().Run(argumentCount, arguments); });
}
