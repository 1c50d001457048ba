// feature_access.cpp - access to a module's feature by name
#include "apps/pyxen-tool/feature_access.h"

#include "apps/common/command_failure.h"
#include "apps/common/hex_bytes.h"
#include "apps/pyxen-tool/sdk_failure.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/text.h"

#include <algorithm>
#include <limits>
#include <utility>

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
bool AreLimitsOf(const Number (&limits)[2]) {
    return limits[0] == static_cast<Number>(std::numeric_limits<Type>::lowest()) &&
           limits[1] == static_cast<Number>(std::numeric_limits<Type>::max());
}

} // namespace

JsonValue ToJson(const FeatureValue& value) {
    return std::visit(
        Overloaded{[](const EnumEntry& entry) { return JsonValue(entry.name); },
                   [](const std::vector<std::uint8_t>& bytes) { return JsonValue(HexText(bytes)); },
                   [](const auto& plain) {
                       return JsonValue(plain);
                   }},
        value);
}

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
    return {grabber.Api(), cache, *info};
}

std::string FeatureAccess::Path() const {
    return cache.GetFeaturePath(info.name);
}

const char* FeatureAccess::TypeName() const {
    switch (info.featureDataType) {
    case PxnFeatureDataInt:
        return "integer";
    case PxnFeatureDataFloat:
        return "float";
    case PxnFeatureDataEnum:
        return "enumeration";
    case PxnFeatureDataString:
        return "string";
    case PxnFeatureDataBool:
        return "boolean";
    case PxnFeatureDataCommand:
        return "command";
    case PxnFeatureDataRaw:
        return "raw";
    case PxnFeatureDataNone:
        return "none";
    default:
        return "unknown";
    }
}

std::string FeatureAccess::Access() const {
    PxnBool readable = 0;
    PxnBool writeable = 0;
    if (api.PxnFeatureAccessQuery(cache.GetHandle(), info.name, &readable, &writeable) != 0) {
        return "-";
    }
    std::string text = readable ? "R" : "";
    text += writeable ? "W" : "";
    return text.empty() ? "-" : text;
}

std::optional<FeatureValue> FeatureAccess::Value() const {
    PxnError error = PxnErrSuccess;
    return ReadValue(error);
}

std::string FeatureAccess::ValueText() const {
    PxnError error = PxnErrSuccess;
    const std::optional<FeatureValue> value = ReadValue(error);
    if (error != PxnErrSuccess) {
        throw SdkFailure("reading " + Path(), error);
    }
    if (!value) {
        throw CommandFailure(Path() + " is of type " + TypeName() + " and has no value");
    }
    return std::visit(
        Overloaded{[](const EnumEntry& entry) { return entry.name; },
                   [](const std::string& text) { return text; },
                   [](const std::vector<std::uint8_t>& bytes) { return HexText(bytes); },
                   [](auto number) {
                       return JsonValue(number).Text();
                   }},
        *value);
}

std::optional<FeatureValue> FeatureAccess::ReadValue(PxnError& error) const {
    PxnHandle const handle = cache.GetHandle();
    FeatureValue result;
    switch (info.featureDataType) {
    case PxnFeatureDataInt: {
        std::int64_t value = 0;
        error = api.PxnFeatureIntGet(handle, info.name, &value);
        result = value;
        break;
    }
    case PxnFeatureDataFloat: {
        double value = 0;
        error = api.PxnFeatureFloatGet(handle, info.name, &value);
        result = value;
        break;
    }
    case PxnFeatureDataBool: {
        PxnBool value = 0;
        error = api.PxnFeatureBoolGet(handle, info.name, &value);
        result = value != 0;
        break;
    }
    case PxnFeatureDataEnum:
    case PxnFeatureDataString: {
        std::string value;
        error = api.GetFeatureAsText(handle, info.name, value);
        result = std::move(value);
        break;
    }
    case PxnFeatureDataRaw: {
        std::uint32_t length = 0;
        error = api.PxnFeatureRawLengthQuery(handle, info.name, &length);
        std::vector<std::uint8_t> bytes(length);
        if (error == PxnErrSuccess) {
            error = api.PxnFeatureRawGet(handle, info.name, reinterpret_cast<char*>(bytes.data()),
                                         length, &length);
            bytes.resize(std::min<std::size_t>(length, bytes.size()));
        }
        result = std::move(bytes);
        break;
    }
    default:
        return std::nullopt;
    }
    return error ? std::nullopt : std::optional(std::move(result));
}

std::vector<FeatureRange::Entry> FeatureAccess::Entries() const {
    PxnHandle const handle = cache.GetHandle();
    std::vector<FeatureRange::Entry> entries;
    std::uint32_t found = 0;
    if (api.PxnFeatureEnumRangeQuery(handle, info.name, nullptr, 0, &found) != 0) {
        return entries;
    }
    std::vector<const char*> names(found);
    if (api.PxnFeatureEnumRangeQuery(handle, info.name, names.data(), found, &found) != 0) {
        return entries;
    }
    for (std::size_t i = 0; i < names.size() && i < found; ++i) {
        PxnBool available = 0;
        const bool known =
            api.PxnFeatureEnumIsAvailable(handle, info.name, names[i], &available) == 0;
        entries.push_back({names[i], known && available != 0});
    }
    return entries;
}

FeatureRange FeatureAccess::Range() const {
    PxnHandle const handle = cache.GetHandle();
    FeatureRange range;
    switch (info.featureDataType) {
    case PxnFeatureDataInt: {
        std::int64_t limits[2] = {};
        std::int64_t increment = 0;
        if (api.PxnFeatureIntRangeQuery(handle, info.name, &limits[0], &limits[1]) == 0) {
            range.least = limits[0];
            range.most = limits[1];
            range.isWholeType = AreLimitsOf<std::int64_t>(limits);
        }
        if (api.PxnFeatureIntIncrementQuery(handle, info.name, &increment) == 0) {
            range.increment = increment;
        }
        break;
    }
    case PxnFeatureDataFloat: {
        double limits[2] = {};
        if (api.PxnFeatureFloatRangeQuery(handle, info.name, &limits[0], &limits[1]) == 0) {
            range.least = limits[0];
            range.most = limits[1];
            // A float feature may be derived from a 64-bit integer.
            range.isWholeType = AreLimitsOf<double>(limits) || AreLimitsOf<std::int64_t>(limits);
        }
        break;
    }
    case PxnFeatureDataString: {
        std::uint32_t length = 0;
        if (api.PxnFeatureStringMaxlengthQuery(handle, info.name, &length) == 0) {
            range.maxLength = length;
        }
        break;
    }
    case PxnFeatureDataEnum:
        range.entries = Entries();
        break;
    default:
        break;
    }
    return range;
}
