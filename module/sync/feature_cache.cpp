// feature_cache.cpp - the feature descriptions of one SDK module
#include "sync/feature_cache.h"

#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr PxnFeatureInfo kNoFeature = {"", "", "", "", "", "", "", "", PxnFeatureDataUnknown,
                                       0,  0,  0,  0,  0};

} // namespace

bool FeatureCache::Init(const char* name, CPyxenAPIAccess* access, PxnHandle moduleHandle,
                        Logger sink) {
    moduleName = name;
    api = access;
    handle = moduleHandle;
    log = sink;
    std::uint32_t found = 0;
    PxnError result = api->PxnFeaturesList(handle, nullptr, 0, &found, sizeof(PxnFeatureInfo));
    if (result != PxnErrSuccess) {
        // The tag is another operation's; that is intended.
        ReportSdkError("CMivoraKVNPyxenClass::PrintParameters: Could not get feature list", result,
                       log);
        return false;
    }
    if (found == 0) {
        log.Error("FeatureCache::Init: Empty feature list");
        features.Free();
        count = 0;
        return true;
    }
    if (!features.Resize(found)) {
        log.Error("FeatureCache::Init: Could not allocate memory for feature list");
        return false;
    }
    std::uint32_t filled = found;
    result = api->PxnFeaturesList(handle, features.Get(), found, &filled, sizeof(PxnFeatureInfo));
    if (result != PxnErrSuccess) {
        ReportSdkError("FeatureCache::Init: Could not get feature list", result, log);
        features.Free();
        count = 0;
        return false;
    }
    // The count is that of the first answer; what the SDK no longer has stays without name.
    std::fill(features.Get() + std::min(filled, found), features.Get() + found, kNoFeature);
    count = found;
    return true;
}

void FeatureCache::Clear() {
    features.Free();
    count = 0;
    moduleName = nullptr;
    api = nullptr;
}

const PxnFeatureInfo* FeatureCache::Find(const char* name) const {
    for (std::uint32_t index = 0; name && index < GetFeatureCount(); ++index) {
        const PxnFeatureInfo& feature = features[index];
        if (feature.name && std::strcmp(feature.name, name) == 0) {
            return &feature;
        }
    }
    return nullptr;
}

std::string FeatureCache::GetFeaturePath(const char* name) const {
    const PxnFeatureInfo* feature = Find(name);
    if (!feature) {
        return "<not available>";
    }
    std::string path = "/";
    path += moduleName ? GetModuleName() : "";
    path += feature->category ? feature->category : "";
    path += '/';
    path += feature->name;
    return path;
}

void FeatureCache::PrintParameters() const {
    NoThrow(false, [this] {
        log.Information("%s features:", moduleName ? GetModuleName() : "unnamed feature cache's");
        if (GetFeatureCount() == 0) {
            log.Information(" - No features found - ");
            return true;
        }
        for (std::uint32_t index = 0; index < count; ++index) {
            PrintFeature(features[index]);
        }
        return true;
    });
}

void FeatureCache::PrintFeature(const PxnFeatureInfo& feature) const {
    const char* const name = feature.name;
    PxnBool readable = 0;
    PxnBool writeable = 0;
    if (api->PxnFeatureAccessQuery(handle, name, &readable, &writeable) != PxnErrSuccess) {
        readable = 0;
    }
    const auto report = [this, name](NameFormat format, PxnError result) {
        ReportSdkError(FormatText(format, name).c_str(), result, log);
    };
    switch (feature.featureDataType) {
    case PxnFeatureDataInt: {
        std::int64_t value = 0;
        if (!readable) {
            log.Information(" %s (int64) is not readable", name);
        } else if (const PxnError result = api->PxnFeatureIntGet(handle, name, &value)) {
            report(" Can't retrieve attribute %s (int64)", result);
        } else {
            log.Information(" %s (int64) = %I64d", name, value);
        }
        break;
    }
    case PxnFeatureDataFloat: {
        double value = 0;
        if (!readable) {
            log.Information(" %s (float) is not readable", name);
        } else if (const PxnError result = api->PxnFeatureFloatGet(handle, name, &value)) {
            report(" Can't retrieve attribute %s (double)", result);
        } else {
            log.Information(" %s (float) = %lf", name, value);
        }
        break;
    }
    case PxnFeatureDataEnum: {
        const char* value = nullptr;
        if (!readable) {
            log.Information(" %s (enum) is not readable", name);
        } else if (const PxnError result = api->PxnFeatureEnumGet(handle, name, &value)) {
            // Without a leading blank; that is intended.
            report("Can't retrieve attribute %s (enum)", result);
        } else {
            log.Information(" %s (enum) = %s", name, value);
        }
        break;
    }
    case PxnFeatureDataString: {
        std::string value;
        if (!readable) {
            log.Information(" %s (string) is not readable", name);
        } else if (const PxnError result = api->GetStringFeature(handle, name, value)) {
            report(" Can't retrieve attribute %s (string)", result);
        } else {
            log.Information(" %s (string) = %s", name, value.c_str());
        }
        break;
    }
    case PxnFeatureDataBool: {
        PxnBool value = 0;
        if (!readable) {
            log.Information(" %s (bool) is not readable", name);
        } else if (const PxnError result = api->PxnFeatureBoolGet(handle, name, &value)) {
            report(" Can't retrieve attribute %s (bool)", result);
        } else {
            log.Information(" %s (bool) = %s", name, value ? "On" : "Off");
        }
        break;
    }
    case PxnFeatureDataCommand:
        log.Information(" %s is a command", name);
        break;
    case PxnFeatureDataRaw:
        log.Information(" %s has raw data type", name);
        break;
    case PxnFeatureDataNone:
        log.Information(" %s has no data", name);
        break;
    default:
        // Without a leading blank; that is intended.
        log.Information("%s has an unknown datatype", name);
        break;
    }
}
