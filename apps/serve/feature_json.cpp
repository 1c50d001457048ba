// feature_json.cpp - features as the interface describes them
#include "apps/serve/feature_json.h"

#include "apps/common/feature_text.h"

std::string FeatureJson(const FeatureDescription& feature,
                        const std::optional<ServiceValue>& value) {
    std::vector<JsonMember> members = FeatureMembers(feature, value);
    const std::vector<JsonMember> more = MoreFeatureMembers(feature);
    members.insert(members.end(), more.begin(), more.end());
    members.push_back({"category", feature.category});
    return JsonObject(members).Text();
}
