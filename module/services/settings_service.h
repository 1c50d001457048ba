// settings_service.h - saving and loading the settings of a camera
#pragma once

#include "mivora/module_services.h"
#include "services/feature_service.h"
#include "services/service_context.h"

#include <cstdint>

namespace pyxen {

/// What IMivoraModuleServices offers about settings. Arguments have been checked for null. Throws
/// std::bad_alloc. Any thread.
class SettingsService {
public:
    SettingsService(ServiceContext& shared, FeatureService& featureService)
        : context(shared), features(featureService) {}

    /// `receiver` may be null.
    ServiceOutcome Save(const char* path, MV_SETTING_RECEIVER receiver, void* receiverContext);
    ServiceOutcome Load(const char* path, std::uint32_t flags, MV_SETTING_RECEIVER receiver,
                        void* receiverContext);

private:
    ServiceContext& context;
    FeatureService& features;
};

} // namespace pyxen
