// version.cpp - the version of the host library
#include "mivora/version.h"

const char* MivoraHostVersion() {
    return MIVORA_HOST_VERSION;
}
