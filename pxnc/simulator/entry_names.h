// entry_names.h - the names of the 55 entry points, as faults name them
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace pxsim {

inline constexpr std::string_view kEntryNames[] = {
    "PxnVersionQuery",
    "PxnStartup",
    "PxnShutdown",
    "PxnCamerasList",
    "PxnCameraInfoQueryByHandle",
    "PxnCameraInfoQuery",
    "PxnCameraOpen",
    "PxnCameraClose",
    "PxnFeaturesList",
    "PxnFeatureInfoQuery",
    "PxnFeatureListSelected",
    "PxnFeatureAccessQuery",
    "PxnFeatureIntGet",
    "PxnFeatureIntSet",
    "PxnFeatureIntRangeQuery",
    "PxnFeatureIntIncrementQuery",
    "PxnFeatureIntValidValueSetQuery",
    "PxnFeatureFloatGet",
    "PxnFeatureFloatSet",
    "PxnFeatureFloatRangeQuery",
    "PxnFeatureEnumGet",
    "PxnFeatureEnumSet",
    "PxnFeatureEnumRangeQuery",
    "PxnFeatureEnumIsAvailable",
    "PxnFeatureEnumAsInt",
    "PxnFeatureEnumAsString",
    "PxnFeatureEnumEntryGet",
    "PxnFeatureStringGet",
    "PxnFeatureStringSet",
    "PxnFeatureStringMaxlengthQuery",
    "PxnFeatureBoolGet",
    "PxnFeatureBoolSet",
    "PxnFeatureCommandRun",
    "PxnFeatureCommandIsDone",
    "PxnFeatureRawGet",
    "PxnFeatureRawSet",
    "PxnFeatureRawLengthQuery",
    "PxnFeatureInvalidationRegister",
    "PxnFeatureInvalidationUnregister",
    "PxnPayloadSizeGet",
    "PxnFrameAnnounce",
    "PxnFrameRevoke",
    "PxnFrameRevokeAll",
    "PxnCaptureStart",
    "PxnCaptureEnd",
    "PxnCaptureFrameQueue",
    "PxnCaptureFrameWait",
    "PxnCaptureQueueFlush",
    "PxnTransportLayersList",
    "PxnInterfacesList",
    "PxnMemoryRead",
    "PxnMemoryWrite",
    "PxnSettingsSave",
    "PxnSettingsLoad",
    "PxnChunkDataAccess",
};
static_assert(std::size(kEntryNames) == 55);

inline bool IsEntryName(std::string_view name) {
    return std::find(std::begin(kEntryNames), std::end(kEntryNames), name) != std::end(kEntryNames);
}

} // namespace pxsim
