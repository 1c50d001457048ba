// stored_value.cpp - values of features as text
#include "pxnc/skeleton/stored_value.h"

#include "pxnc/skeleton/feature.h"
#include "pxnc/skeleton/number_text.h"

#include <cstdint>

namespace skeleton {

PxnError ReadAsText(Feature& feature, std::string& text) {
    PxnError result = PxnErrNotSupported;
    std::int64_t integer = 0;
    double real = 0;
    const char* entry = "";
    bool flag = false;
    std::vector<char> bytes;
    switch (feature.DataType()) {
    case PxnFeatureDataInt:
        result = feature.GetInt(integer);
        text = std::to_string(integer);
        break;
    case PxnFeatureDataFloat:
        result = feature.GetFloat(real);
        text = FormatFloat(real);
        break;
    case PxnFeatureDataEnum:
        result = feature.GetEnum(entry);
        text = entry;
        break;
    case PxnFeatureDataString:
        result = feature.GetString(text);
        break;
    case PxnFeatureDataBool:
        result = feature.GetBool(flag);
        text = flag ? "true" : "false";
        break;
    case PxnFeatureDataRaw:
        result = feature.GetRaw(bytes);
        text = ToHex(std::string(bytes.begin(), bytes.end()));
        break;
    default:
        break;
    }
    return result;
}

PxnError WriteAsText(Feature& feature, const std::string& text) {
    std::int64_t integer = 0;
    double real = 0;
    bool flag = false;
    std::string bytes;
    switch (feature.DataType()) {
    case PxnFeatureDataInt:
        return ParseInt(text, integer) ? feature.SetInt(integer) : PxnError{PxnErrInvalidValue};
    case PxnFeatureDataFloat:
        return ParseFloat(text, real) ? feature.SetFloat(real) : PxnError{PxnErrInvalidValue};
    case PxnFeatureDataEnum:
        return feature.SetEnum(text.c_str());
    case PxnFeatureDataString:
        return feature.SetString(text.c_str());
    case PxnFeatureDataBool:
        return ParseBool(text, flag) ? feature.SetBool(flag) : PxnError{PxnErrInvalidValue};
    case PxnFeatureDataRaw:
        return FromHex(text, bytes)
                   ? feature.SetRaw(bytes.data(), static_cast<std::uint32_t>(bytes.size()))
                   : PxnError{PxnErrInvalidValue};
    default:
        return PxnErrNotSupported;
    }
}

} // namespace skeleton
