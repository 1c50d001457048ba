// sdk_session.h - the camera SDK from loading to unloading
#pragma once

#include "sdk/logger.h"
#include "sdk/malloc_array.h"
#include "sdk/pyxen_api_access.h"
#include "sync/feature_cache.h"

#include <cstdint>
#include <string>

namespace pyxen {

/// Holds the loaded SDK and what is read from it once: its version, the features of the system
/// module and its interfaces.
///
/// All operations belong to the thread that initialises the grabber. Takes no lock: whoever uses
/// Api() on another thread follows the rules of CPyxenAPIAccess.
class SdkSession {
public:
    explicit SdkSession(Logger sink) : log(sink) {}

    CPyxenAPIAccess& Api() { return api; }
    FeatureCache& SystemCache() { return systemCache; }
    /// The number of interfaces in the list; 0 while the SDK is not loaded.
    std::uint32_t GetInterfaceCount() const { return interfaceCount; }

    /// Loads and starts the SDK, with the configuration file in `configDirectory` if there is one.
    /// False when the SDK cannot be loaded or started. Throws std::bad_alloc.
    bool Load(const std::string& configDirectory);
    /// Asks the SDK for its version. The SDK must be loaded.
    PxnVersionInfo QueryVersion() const;
    /// Name and version of the SDK and file version of its library. Throws std::bad_alloc.
    std::string GetVersionText(const char* sdkName, const PxnVersionInfo& version) const;
    /// Lists the features of the system module, then the interfaces. Without memory for them the
    /// list of interfaces is shorter, or none.
    void List();
    /// Shuts the SDK down, if it is loaded, and empties the lists.
    void Unload();
    void ForgetInterfaces();

private:
    void ListInterfaces();

    const Logger log;
    CPyxenAPIAccess api;
    FeatureCache systemCache; // its texts are the SDK's
    MallocArray<PxnInterfaceInfo> interfaceList;
    std::uint32_t interfaceCount = 0;
};

} // namespace pyxen
