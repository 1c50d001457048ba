// feature_access.cpp - access to a module's feature by name
#include "apps/pyxen-tool/feature_access.h"

#include "apps/common/command_failure.h"
#include "apps/common/hex_bytes.h"
#include "apps/pyxen-tool/sdk_failure.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/text.h"
#include "sync/feature_cache.h"

#include <iterator>
#include <limits>

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

template <typename Type, typename Number>
bool AreLimitsOf(const FeatureRange::Limits<Number>& limits) {
    return limits.least == static_cast<Number>(std::numeric_limits<Type>::lowest()) &&
           limits.most == static_cast<Number>(std::numeric_limits<Type>::max());
}

} // namespace

JsonValue ToJson(const FeatureValue& value) {
    return value.Visit(
        Overloaded{[](const EnumEntry& entry) { return JsonValue(entry.name ? entry.name : ""); },
                   [](const FeatureBytes& bytes) { return JsonValue(HexText(bytes)); },
                   [](const auto& plain) {
                       return JsonValue(plain);
                   }});
}

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

FeatureCache& FeatureAccess::RequireModule(CMivoraKVNPyxenClass& grabber, const std::string& name) {
    FeatureCache* const cache = FindModule(grabber, name);
    if (!cache) {
        throw CommandFailure("there is no module \"" + name + "\"; there are " +
                             KnownModules(grabber));
    }
    return *cache;
}

FeatureAccess FeatureAccess::Find(CMivoraKVNPyxenClass& grabber, const std::string& path) {
    const std::size_t begin = path.starts_with('/') ? 1 : 0;
    const std::size_t first = path.find('/', begin);
    const std::size_t last = path.rfind('/');
    if (first == std::string::npos) {
        throw CommandFailure("\"" + path + "\" is not of the form MODULE/FEATURE");
    }
    const std::string moduleName = path.substr(begin, first - begin);
    FeatureCache& cache = RequireModule(grabber, moduleName);
    const std::string name = path.substr(last + 1);
    const PxnFeatureInfo* const info = cache.Find(name.c_str());
    if (!info) {
        throw CommandFailure("module " + std::string(cache.GetModuleName()) + " has no feature \"" +
                             name + "\"");
    }
    return {cache, *info};
}

std::string FeatureAccess::Path() const {
    return cache.GetFeaturePath(info.name);
}

const char* FeatureAccess::TypeName() const {
    constexpr const char* kNames[] = {"unknown", "integer", "float", "enumeration", "string",
                                      "boolean", "command", "raw",   "none"};
    return kNames[info.featureDataType < std::size(kNames) ? info.featureDataType : 0];
}

std::string FeatureAccess::Access() const {
    bool readable = false;
    bool writable = false;
    feature.Access(readable, writable);
    std::string text = readable ? "R" : "";
    text += writable ? "W" : "";
    return text.empty() ? "-" : text;
}

std::optional<FeatureValue> FeatureAccess::Value() const {
    FeatureValue value;
    return feature.Read(value) == PxnErrSuccess ? std::optional(value) : std::nullopt;
}

std::string FeatureAccess::ValueText() const {
    if (!HasValue(feature.Type())) {
        throw CommandFailure(Path() + " is of type " + TypeName() + " and has no value");
    }
    FeatureValue value;
    if (const PxnError error = feature.Read(value)) {
        throw SdkFailure("reading " + Path(), error);
    }
    return value.Visit(
        Overloaded{[](const EnumEntry& entry) { return std::string(entry.name ? entry.name : ""); },
                   [](const std::string& text) { return text; },
                   [](const FeatureBytes& bytes) { return HexText(bytes); },
                   [](auto number) {
                       return JsonValue(number).Text();
                   }});
}

std::vector<ShownRange::Entry> FeatureAccess::Entries(const FeatureRange& range) const {
    std::vector<ShownRange::Entry> entries;
    for (const char* const name : range.entries) {
        bool available = false;
        feature.IsAvailable(name, available);
        entries.push_back({name ? name : "", available});
    }
    return entries;
}

ShownRange FeatureAccess::Range() const {
    ShownRange shown;
    FeatureRange range;
    const bool known = feature.Range(range) == PxnErrSuccess;
    const auto showLimits = [&](const auto& limits, bool isWholeType) {
        if (known) {
            shown.least = limits.least;
            shown.most = limits.most;
            shown.isWholeType = isWholeType;
        }
    };
    switch (feature.Type()) {
    case FeatureType::kInteger:
        showLimits(range.integers, AreLimitsOf<std::int64_t>(range.integers));
        if (std::int64_t increment = 0; feature.Increment(increment) == PxnErrSuccess) {
            shown.increment = increment;
        }
        break;
    case FeatureType::kFloat:
        // A float feature may be derived from a 64-bit integer.
        showLimits(range.floats,
                   AreLimitsOf<double>(range.floats) || AreLimitsOf<std::int64_t>(range.floats));
        break;
    case FeatureType::kText:
        if (known) {
            shown.maxLength = range.longestText;
        }
        break;
    case FeatureType::kEnumeration:
        shown.entries = Entries(range);
        break;
    default:
        break;
    }
    return shown;
}
