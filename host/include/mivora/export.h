// export.h - export mark of the host library, defined by the build
#pragma once

#ifndef MIVORA_API
#define MIVORA_API
#endif
