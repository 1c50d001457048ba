// feature_changes.h - which features of the open camera have changed
#pragma once

#include "mivora/module_services.h"
#include "platform/mutex.h"

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

class ServiceClient;

/// Follows all features of the open camera. Followed and forgotten by the owner's thread; the
/// changes come on threads of the SDK.
class FeatureChanges {
public:
    using Name = std::pair<std::string, std::string>; ///< module and feature

    /// The camera has been opened. What cannot be followed is left out.
    void Follow(ServiceClient& services, IMivoraModuleServices& moduleServices);
    /// The camera has been closed, with which the subscriptions have ended.
    void Forget();
    /// Those that have changed since the last call, at most so many; the others come next time.
    std::vector<Name> Take(std::size_t most);

private:
    static void OnChange(const char* module, const char* feature, void* context);

    platform::Mutex mutex;
    std::set<Name> changed GUARDED_BY(mutex);
};
