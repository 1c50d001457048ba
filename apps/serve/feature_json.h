// feature_json.h - features as the interface describes them
#pragma once

#include "apps/common/service_client.h"

#include <optional>
#include <string>

/// An object with all that is known of the feature.
std::string FeatureJson(const FeatureDescription& feature,
                        const std::optional<ServiceValue>& value);
