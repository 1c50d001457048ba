// version.h - the version of the host library
#pragma once

#include "mivora/export.h"

/// The version of the host library that is loaded, such as "1.0.0", which may be newer than the one
/// that a host was built with. Any thread; the text lives as long as the library.
MIVORA_API const char* MivoraHostVersion();
