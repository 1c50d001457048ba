// feature_text.h - features and their values as text and as JSON
#pragma once

#include "apps/common/json_text.h"
#include "apps/common/service_client.h"

#include <optional>
#include <string>

/// "integer", "enumeration" and so on.
const char* FeatureTypeText(MV_FEATURE_TYPE type);
/// "beginner", "expert", "guru", "invisible" or "unknown".
const char* VisibilityText(MV_FEATURE_VISIBILITY visibility);
/// "RW", "R", "W" or "-".
std::string AccessText(const FeatureDescription& feature);

/// The value as "get" prints it; a register's bytes are hexadecimal.
std::string ServiceValueText(const ServiceValue& value);
/// The same as a JSON value of the feature's type.
JsonValue ServiceValueJson(const ServiceValue& value);

/// "16..64 step 4", "at most 16 bytes" or "Mono8|Mono12(unavailable)"; empty for a feature without
/// limits of its own.
std::string RangeText(const FeatureDescription& feature);
/// Path, type, access, value, unit and range of a feature in one line without its end.
std::string FeatureLine(const std::string& name, std::size_t nameWidth,
                        const FeatureDescription& feature,
                        const std::optional<ServiceValue>& value);
/// The same as the members of an object.
std::vector<JsonMember> FeatureMembers(const FeatureDescription& feature,
                                       const std::optional<ServiceValue>& value);
/// Texts, visibility and what the feature selects.
std::vector<JsonMember> MoreFeatureMembers(const FeatureDescription& feature);

/// Parses a value of the feature's type: numbers in decimal or 0x..., true or false (also 1 and 0,
/// on and off), a register's bytes in hexadecimal. Throws CommandFailure.
ServiceValue ParseServiceValue(const FeatureDescription& feature, const std::string& text);
