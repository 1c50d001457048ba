// main.cpp - pyxen-tool, feature and offline tools of the grabber module
#include "apps/pyxen-tool/program.h"

int main(int argumentCount, char** arguments) {
    return PyxenToolProgram().Run(argumentCount, arguments);
}
