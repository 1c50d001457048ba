// range_checks.cpp - whether a value fits a feature
#include "sdk/feature.h"
#include "sdk/format_text.h"
#include "sdk/no_throw.h"
#include "sdk/pyxen_api_access.h"
#include "sdk/sdk_error.h"

using namespace pyxen;

namespace {

/// What is said when the range cannot be read, with the names of module and feature. Booleans have
/// no range.
constexpr TypeTable<LogFormat<const char*, const char*>, 4> kRangeUnknown = {{
    "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of int64 feature %s::%s",
    // Compatibility: support searches for the integer's words here, too.
    "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of int64 feature %s::%s",
    "CMivoraKVNPyxenClass::SyncFeature: Cannot query range of enum feature %s::%s",
    "CMivoraKVNPyxenClass::SyncFeature: Cannot query max length of string-feature %s::%s",
}};

} // namespace

bool CPyxenAPIAccess::IsInRange(PxnHandle handle, const char* moduleName, const char* name,
                                const FeatureValue& value, Logger sink) const {
    FeatureRange range;
    const PxnError result = Feature(*this, handle, name, value.Type()).Range(range);
    if (result == PxnErrSuccess) {
        return range.Contains(value);
    }
    return NoThrow(false, [&] {
        const std::string context = FormatText(*kRangeUnknown.Find(value.Type()),
                                               moduleName ? moduleName : "unknown", name);
        ReportSdkError(context.c_str(), result, sink);
        return false;
    });
}

bool CPyxenAPIAccess::IsIntInRange(PxnHandle handle, const char* moduleName, const char* name,
                                   std::int64_t value) const {
    return IsInRange(handle, moduleName, name, value);
}

bool CPyxenAPIAccess::IsFloatInRange(PxnHandle handle, const char* moduleName, const char* name,
                                     double value) const {
    return IsInRange(handle, moduleName, name, value);
}

bool CPyxenAPIAccess::IsStringInRange(PxnHandle handle, const char* moduleName, const char* name,
                                      const char* value) const {
    return NoThrow(false, [&] { return IsInRange(handle, moduleName, name, std::string(value)); });
}

bool CPyxenAPIAccess::IsEnumInRange(PxnHandle handle, const char* moduleName, const char* name,
                                    const char* value) const {
    return IsInRange(handle, moduleName, name, EnumEntry{value});
}
