// module_entry.h - the exported entry points of a grabber module
#pragma once

#include "mivora/module_services.h"

#include <stdint.h>

class CMivoraGrabber;

///@{
/// Name of an exported function.
inline constexpr const char* kMvCreateGrabberName = "CreateGrabberInstance";
inline constexpr const char* kMvDeleteGrabberName = "DeleteGrabberInstance";
inline constexpr const char* kMvModuleInterfaceName = "MivoraModuleInterface";
///@}

/// Creates a grabber; `instance` is the handle of the loaded module. Null when out of memory.
typedef CMivoraGrabber* (*MV_CREATE_GRABBER)(void* instance);
/// Deletes a grabber created by the same module; null is ignored.
typedef void (*MV_DELETE_GRABBER)(CMivoraGrabber* grabber);

/// The interface that a module was built for; a host refuses modules with another one.
struct MV_MODULE_INTERFACE {
    uint32_t size;              ///< size of this record in bytes
    uint32_t interfaceVersion;  ///< MIVORA_INTERFACE_VERSION
    const char* compilerFamily; ///< "Itanium C++ ABI" or "Microsoft C++ ABI"

    // Optional: a record may end here, and its size is kMvModuleInterfaceSmallest then.
    uint32_t servicesVersion;   ///< MIVORA_SERVICES_BASE_VERSION
    MV_SERVICES_QUERY services; ///< null without any

    // Optional as well: a record may end here.
    const char* version; ///< the module's own, such as "1.2.0", for people; null if it has none
};
/// Size of a record that ends before the services.
inline constexpr uint32_t kMvModuleInterfaceSmallest = 16;
/// Returns the module's record, which exists as long as the module is loaded.
typedef const MV_MODULE_INTERFACE* (*MV_MODULE_INTERFACE_QUERY)();

/// The C++ ABI of the compiler that reads this header.
#if defined(_MSC_VER)
inline constexpr const char* kMvCompilerFamily = "Microsoft C++ ABI";
#else
inline constexpr const char* kMvCompilerFamily = "Itanium C++ ABI";
#endif
