// module_entry.h - what a grabber module exports
#pragma once

#include <stdint.h>

class CMivoraGrabber;

/// Names of the exported entries.
inline constexpr const char* kMvCreateGrabberName = "CreateGrabberInstance";
inline constexpr const char* kMvDeleteGrabberName = "DeleteGrabberInstance";
inline constexpr const char* kMvModuleInterfaceName = "MivoraModuleInterface";

/// Makes a grabber; `instance` is the module's handle. Null when memory is out.
typedef CMivoraGrabber* (*MV_CREATE_GRABBER)(void* instance);
/// Destroys a grabber of the same module; null is ignored.
typedef void (*MV_DELETE_GRABBER)(CMivoraGrabber* grabber);

/// What a module was built against, so that a host refuses what it cannot talk to.
struct MV_MODULE_INTERFACE {
    uint32_t size;              ///< of this record
    uint32_t interfaceVersion;  ///< MIVORA_INTERFACE_VERSION
    const char* compilerFamily; ///< "Itanium C++ ABI" or "Microsoft C++ ABI"
};
typedef const MV_MODULE_INTERFACE* (*MV_MODULE_INTERFACE_QUERY)();

#if defined(_MSC_VER)
inline constexpr const char* kMvCompilerFamily = "Microsoft C++ ABI";
#else
inline constexpr const char* kMvCompilerFamily = "Itanium C++ ABI";
#endif
