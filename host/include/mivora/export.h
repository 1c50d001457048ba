// export.h - marks what the host library exports
#pragma once

#ifndef MIVORA_API
#if defined(__ELF__)
#define MIVORA_API __attribute__((visibility("default"))) // also where the default is hidden
#else
#define MIVORA_API // the build of the library and its CMake package define it
#endif
#endif
