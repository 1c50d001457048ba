// feature_cache.cpp - the feature descriptions of one SDK module
#include "sync/feature_cache.h"

#include "sdk/answer_size.h"
#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

#include <algorithm>
#include <cstring>
#include <variant>

using namespace pyxen;

namespace {

template <typename Shown>
using PrintLine = LogFormat<const char*, Shown>; // name, value

/// The lines about a feature of a type with a value, whose name they all take.
struct PrintWords {
    NameFormat notReadable;
    NameFormat readFailed;
    std::variant<PrintLine<std::int64_t>, PrintLine<double>, PrintLine<const char*>> value;
};

constexpr TypeTable<PrintWords> kPrintWords = {{
    {" %s (int64) is not readable", " Can't retrieve attribute %s (int64)",
     PrintLine<std::int64_t>(" %s (int64) = %I64d")},
    {" %s (float) is not readable", " Can't retrieve attribute %s (double)",
     PrintLine<double>(" %s (float) = %lf")},
    // Compatibility: without a leading blank.
    {" %s (enum) is not readable", "Can't retrieve attribute %s (enum)",
     PrintLine<const char*>(" %s (enum) = %s")},
    {" %s (string) is not readable", " Can't retrieve attribute %s (string)",
     PrintLine<const char*>(" %s (string) = %s")},
    {" %s (bool) is not readable", " Can't retrieve attribute %s (bool)",
     PrintLine<const char*>(" %s (bool) = %s")},
}};

/// Texts that the SDK left out are empty.
void FillMissingTexts(PxnFeatureInfo& feature) {
    for (const char** const text :
         {&feature.name, &feature.category, &feature.displayName, &feature.tooltip,
          &feature.description, &feature.sfncNamespace, &feature.unit, &feature.representation}) {
        *text = *text ? *text : "";
    }
}

/// The line about a feature of a type without a value.
NameFormat LineWithoutValue(FeatureType type) {
    switch (type) {
    case FeatureType::kCommand:
        return " %s is a command";
    case FeatureType::kBytes:
        return " %s has raw data type";
    case FeatureType::kNone:
        return " %s has no data";
    default:
        return "%s has an unknown datatype"; // Compatibility: without a leading blank
    }
}

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
        // Compatibility: support searches for the tag of another operation.
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
    if (!IsAnswerSize<PxnFeatureInfo>(found) || !features.Resize(found)) {
        log.Error("FeatureCache::Init: Could not allocate memory for feature list");
        return false;
    }
    // What the SDK counts and does not fill is a feature without a name.
    std::fill_n(features.Get(), found, kNoFeature);
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
    for (std::uint32_t index = 0; index < found; ++index) {
        FillMissingTexts(features[index]);
    }
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
    for (std::uint32_t index = 0; name && *name && index < GetFeatureCount(); ++index) {
        const PxnFeatureInfo& feature = features[index];
        if (std::strcmp(feature.name, name) == 0) {
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
    path += feature->category;
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
            PrintFeature(GetFeature(features[index]));
        }
        return true;
    });
}

void FeatureCache::PrintFeature(const Feature& feature) const {
    const char* const name = feature.Name();
    bool readable = false;
    bool writable = false;
    feature.Access(readable, writable);
    const PrintWords* const words = kPrintWords.Find(feature.Type());
    FeatureValue value;
    if (!words) {
        log.Information(LineWithoutValue(feature.Type()), name);
    } else if (!readable) {
        log.Information(words->notReadable, name);
    } else if (const PxnError result = feature.Read(value)) {
        ReportSdkError(FormatText(words->readFailed, name).c_str(), result, log);
    } else {
        value.Show("Off", "On", [&](auto shown) {
            log.Information(std::get<PrintLine<decltype(shown)>>(words->value), name, shown);
        });
    }
}
