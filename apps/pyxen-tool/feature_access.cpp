// feature_access.cpp - one feature of one module, by name and as text
#include "apps/pyxen-tool/feature_access.h"

#include "apps/common/command_failure.h"
#include "apps/common/hex_bytes.h"
#include "apps/pyxen-tool/sdk_failure.h"
#include "grabber/mivora_kvn_pyxen_class.h"
#include "platform/text.h"

#include <algorithm>
#include <cstdint>
#include <vector>

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

Json FeatureAccess::Value() const {
    PxnError error = PxnErrSuccess;
    return ReadValue(error);
}

std::string FeatureAccess::ValueText() const {
    PxnError error = PxnErrSuccess;
    const Json value = ReadValue(error);
    if (error != PxnErrSuccess) {
        throw SdkFailure("reading " + Path(), error);
    }
    if (value.is_null()) {
        throw CommandFailure(Path() + " is of type " + TypeName() + " and has no value");
    }
    return value.is_string() ? value.get<std::string>() : JsonDump(value);
}

Json FeatureAccess::ReadValue(PxnError& error) const {
    PxnHandle const handle = cache.GetHandle();
    switch (info.featureDataType) {
    case PxnFeatureDataInt: {
        std::int64_t value = 0;
        error = api.PxnFeatureIntGet(handle, info.name, &value);
        return error ? Json() : Json(value);
    }
    case PxnFeatureDataFloat: {
        double value = 0;
        error = api.PxnFeatureFloatGet(handle, info.name, &value);
        return error ? Json() : Json(value);
    }
    case PxnFeatureDataBool: {
        PxnBool value = 0;
        error = api.PxnFeatureBoolGet(handle, info.name, &value);
        return error ? Json() : Json(value != 0);
    }
    case PxnFeatureDataEnum:
    case PxnFeatureDataString: {
        std::string value;
        error = api.GetFeatureAsText(handle, info.name, value);
        return error ? Json() : Json(value);
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
        return error ? Json() : Json(HexText(bytes));
    }
    default:
        return {};
    }
}

Json FeatureAccess::Entries() const {
    PxnHandle const handle = cache.GetHandle();
    Json list = Json::array();
    std::uint32_t found = 0;
    if (api.PxnFeatureEnumRangeQuery(handle, info.name, nullptr, 0, &found) != 0) {
        return list;
    }
    std::vector<const char*> names(found);
    if (api.PxnFeatureEnumRangeQuery(handle, info.name, names.data(), found, &found) != 0) {
        return list;
    }
    for (std::size_t i = 0; i < names.size() && i < found; ++i) {
        PxnBool available = 0;
        const bool known =
            api.PxnFeatureEnumIsAvailable(handle, info.name, names[i], &available) == 0;
        list.push_back({{"name", names[i]}, {"available", known && available != 0}});
    }
    return list;
}

void FeatureAccess::AddRange(Json& object) const {
    PxnHandle const handle = cache.GetHandle();
    switch (info.featureDataType) {
    case PxnFeatureDataInt: {
        std::int64_t range[2] = {};
        std::int64_t increment = 0;
        if (api.PxnFeatureIntRangeQuery(handle, info.name, &range[0], &range[1]) == 0) {
            object["min"] = range[0];
            object["max"] = range[1];
        }
        if (api.PxnFeatureIntIncrementQuery(handle, info.name, &increment) == 0) {
            object["increment"] = increment;
        }
        break;
    }
    case PxnFeatureDataFloat: {
        double range[2] = {};
        if (api.PxnFeatureFloatRangeQuery(handle, info.name, &range[0], &range[1]) == 0) {
            object["min"] = range[0];
            object["max"] = range[1];
        }
        break;
    }
    case PxnFeatureDataString: {
        std::uint32_t length = 0;
        if (api.PxnFeatureStringMaxlengthQuery(handle, info.name, &length) == 0) {
            object["maxLength"] = length;
        }
        break;
    }
    case PxnFeatureDataEnum:
        object["entries"] = Entries();
        break;
    default:
        break;
    }
}
