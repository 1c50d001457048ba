// main.cpp - mivora, a host application for the command line
#include "apps/mivora/program.h"

int main(int argumentCount, char** arguments) {
    return MivoraProgram().Run(argumentCount, arguments);
}
