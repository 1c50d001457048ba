// range_checks.cpp - whether a value fits a feature
#include "sdk/format_text.h"
#include "sdk/logger.h"
#include "sdk/malloc_array.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

#include <algorithm>
#include <cstring>

namespace {

void ReportRangeError(LogFormat<const char*, const char*> format, const char* moduleName,
                      const char* name, PxnError result, Logger log) {
    NoThrow(false, [&] {
        const std::string context = FormatText(format, moduleName ? moduleName : "unknown", name);
        ReportSdkError(context.c_str(), result, log);
        return true;
    });
}

} // namespace

bool CPyxenAPIAccess::IsIntInRange(PxnHandle handle, const char* moduleName, const char* name,
                                   std::int64_t value) {
    std::int64_t min = 0;
    std::int64_t max = 0;
    const PxnError result = PxnFeatureIntRangeQuery(handle, name, &min, &max);
    if (result != PxnErrSuccess) {
        ReportRangeError(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of int64 feature %s::%s",
            moduleName, name, result, log);
        return false;
    }
    return min <= value && value <= max;
}

bool CPyxenAPIAccess::IsFloatInRange(PxnHandle handle, const char* moduleName, const char* name,
                                     double value) {
    double min = 0;
    double max = 0;
    const PxnError result = PxnFeatureFloatRangeQuery(handle, name, &min, &max);
    if (result != PxnErrSuccess) {
        // The wording is the integer's; that is intended.
        ReportRangeError(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of int64 feature %s::%s",
            moduleName, name, result, log);
        return false;
    }
    return min <= value && value <= max;
}

bool CPyxenAPIAccess::IsStringInRange(PxnHandle handle, const char* moduleName, const char* name,
                                      const char* value) {
    std::uint32_t maxLength = 0;
    const PxnError result = PxnFeatureStringMaxlengthQuery(handle, name, &maxLength);
    if (result != PxnErrSuccess) {
        ReportRangeError(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot query max length of string-feature %s::%s",
            moduleName, name, result, log);
        return false;
    }
    return std::strlen(value) <= maxLength;
}

bool CPyxenAPIAccess::IsEnumInRange(PxnHandle handle, const char* moduleName, const char* name,
                                    const char* value) {
    std::uint32_t count = 0;
    PxnError result = PxnFeatureEnumRangeQuery(handle, name, nullptr, 0, &count);
    MallocArray<const char*> entries;
    if (result == PxnErrSuccess && count > 0) {
        const std::uint32_t capacity = count;
        result = entries.Resize(capacity)
                     ? PxnFeatureEnumRangeQuery(handle, name, entries.Get(), capacity, &count)
                     : PxnErrOther;
        count = std::min(count, capacity);
    }
    if (result != PxnErrSuccess) {
        ReportRangeError(
            "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of enum feature %s::%s",
            moduleName, name, result, log);
        return false;
    }
    for (std::uint32_t index = 0; index < count; ++index) {
        if (entries[index] && std::strcmp(entries[index], value) == 0) {
            return true;
        }
    }
    return false;
}
