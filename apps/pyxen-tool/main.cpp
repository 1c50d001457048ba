// main.cpp - pyxen-tool, feature and offline tools of the grabber module
#include "apps/common/guarded_main.h"
#include "apps/pyxen-tool/program.h"

int main(int argumentCount, char** arguments) {
    return GuardedMain("pyxen-tool",
                       [&] { return PyxenToolProgram().Run(argumentCount, arguments); });
}
