// feature_access.cpp - access to a module's feature by name
#include "apps/pyxen-tool/feature_access.h"

#include "apps/common/command_failure.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/hex_bytes.h"
#include "apps/common/parse_number.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/text.h"
#include "sync/feature_cache.h"

#include <iterator>
#include <optional>

using namespace pyxen;

namespace {

std::string KnownModules(CMivoraKVNPyxenClass& grabber) {
    std::string names = "PxnSystem";
    for (std::uint32_t i = 0; i < grabber.GetNumFeatureCaches(); ++i) {
        if (const char* const name = grabber.GetFeatureCache(i)->GetModuleName()) {
            names += std::string(", ") + name;
        }
    }
    return names;
}

} // namespace

FeatureAccess::FeatureAccess(FeatureCache& moduleCache, const PxnFeatureInfo& record)
    : cache(moduleCache), info(record), feature(moduleCache.GetFeature(record)) {}

FeatureCache* FeatureAccess::FindModule(CMivoraKVNPyxenClass& grabber, const std::string& name) {
    FeatureCache& system = grabber.SystemCache();
    if (system.GetModuleName() &&
        platform::CompareNoCase(system.GetModuleName(), name.c_str()) == 0) {
        return &system;
    }
    return grabber.GetFeatureCacheByName(name.c_str());
}

FeatureAccess FeatureAccess::Find(CMivoraKVNPyxenClass& grabber, const std::string& path) {
    const FeatureName wanted = ParseFeatureName(path);
    FeatureCache* const cache = FindModule(grabber, wanted.module);
    if (!cache) {
        throw CommandFailure("there is no module \"" + wanted.module + "\"; there are " +
                             KnownModules(grabber));
    }
    const PxnFeatureInfo* const info = cache->Find(wanted.feature.c_str());
    if (!info) {
        throw CommandFailure("module " + std::string(cache->GetModuleName()) +
                             " has no feature \"" + wanted.feature + "\"");
    }
    wanted.CheckCategory(info->category ? info->category : "");
    return {*cache, *info};
}

std::string FeatureAccess::Path() const {
    return cache.GetFeaturePath(info.name);
}

const char* FeatureAccess::TypeName() const {
    constexpr const char* kNames[] = {"unknown", "integer", "float", "enumeration", "string",
                                      "boolean", "command", "raw",   "none"};
    return kNames[info.featureDataType < std::size(kNames) ? info.featureDataType : 0];
}

template <typename T>
const T& FeatureAccess::Require(const std::optional<T>& value, const std::string& text) const {
    if (!value) {
        throw CommandFailure("\"" + text + "\" is no value for " + Path() + ", which is of type " +
                             TypeName());
    }
    return *value;
}

FeatureValue FeatureAccess::Parse(const std::string& text) const {
    switch (feature.Type()) {
    case FeatureType::kInteger:
        return Require(ParseSigned(text), text);
    case FeatureType::kFloat:
        return Require(ParseDouble(text), text);
    case FeatureType::kEnumeration:
        return EnumEntry{text.c_str()};
    case FeatureType::kText:
        return text;
    case FeatureType::kBoolean:
        return Require(ParseTruth(text), text);
    case FeatureType::kBytes:
        return Require(ParseHex(text), text);
    default:
        throw CommandFailure(Path() + " is of type " + TypeName() + " and takes no value");
    }
}
