// feature_value_text.cpp - the text in the column of values
#include "ui/feature_value_text.h"

#include "sdk/pyxen_api_access.h"
#include "ui/value_text.h"

namespace {

constexpr const char* kUnavailable = "<unavailable>";

} // namespace

std::string FormatFeatureValue(CPyxenAPIAccess& api, PxnHandle handle, const char* name,
                               const PxnFeatureInfo& description) {
    if (!name) {
        return {};
    }
    switch (description.featureDataType) {
    case PxnFeatureDataUnknown:
        return kUnavailable;
    case PxnFeatureDataInt: {
        std::int64_t value = 0;
        return api.PxnFeatureIntGet(handle, name, &value) ? kUnavailable : FormatInteger(value);
    }
    case PxnFeatureDataFloat: {
        double value = 0.0;
        return api.PxnFeatureFloatGet(handle, name, &value) ? kUnavailable : FormatFloat(value);
    }
    case PxnFeatureDataEnum: {
        const char* value = nullptr;
        return api.PxnFeatureEnumGet(handle, name, &value) || !value ? kUnavailable : value;
    }
    case PxnFeatureDataString: {
        std::string value;
        return api.GetStringFeature(handle, name, value) ? kUnavailable : value;
    }
    case PxnFeatureDataBool: {
        PxnBool value = 0;
        return api.PxnFeatureBoolGet(handle, name, &value) ? kUnavailable
               : value                                     ? "True"
                                                           : "False";
    }
    case PxnFeatureDataCommand:
        return "<Press button below to execute>";
    case PxnFeatureDataRaw:
        return "<unsupported>";
    default:
        return {};
    }
}
