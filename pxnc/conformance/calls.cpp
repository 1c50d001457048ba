// calls.cpp - one call of every function
#include "pxnc/conformance/calls.h"

#include <algorithm>
#include <cstring>

namespace conformance {
namespace {

constexpr std::uint32_t kAny = PxnFeatureDataUnknown;
constexpr const wchar_t* kNoPath = L"there-is-no-such-directory/settings.xml";

void PXN_CALL IgnoreChange(PxnHandle, const char*, void*) {}
PxnError PXN_CALL IgnoreChunks(PxnHandle, void*) {
    return PxnErrSuccess;
}

using Sdk = SdkFunctions;
using With = CallArguments;

constexpr Call kCalls[] =
    {
        {"PxnCamerasList", false, false, kAny, false,
         [](const Sdk& sdk, const With&) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo));
         }},
        {"PxnCameraInfoQueryByHandle", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             PxnCameraInfo info{};
             return sdk.PxnCameraInfoQueryByHandle(with.handle, &info, sizeof info);
         }},
        {"PxnCameraInfoQuery", false, false, kAny, false,
         [](const Sdk& sdk, const With&) -> PxnError {
             PxnCameraInfo info{};
             return sdk.PxnCameraInfoQuery(kNoCamera, &info, sizeof info);
         }},
        {"PxnCameraOpen", false, false, kAny, false,
         [](const Sdk& sdk, const With&) -> PxnError {
             PxnHandle camera = nullptr;
             return sdk.PxnCameraOpen(kNoCamera, PxnAccessModeFull, &camera);
         }},
        {"PxnCameraClose", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnCameraClose(with.handle);
         }},
        {"PxnFeaturesList", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeaturesList(with.handle, nullptr, 0, &found, sizeof(PxnFeatureInfo));
         }},
        {"PxnFeatureInfoQuery", true, true, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             PxnFeatureInfo info{};
             return sdk.PxnFeatureInfoQuery(with.handle, with.feature, &info, sizeof info);
         }},
        {"PxnFeatureListSelected", true, true, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureListSelected(with.handle, with.feature, nullptr, 0, &found,
                                               sizeof(PxnFeatureInfo));
         }},
        {"PxnFeatureAccessQuery", true, true, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             PxnBool readable = 0;
             PxnBool writable = 0;
             return sdk.PxnFeatureAccessQuery(with.handle, with.feature, &readable, &writable);
         }},
        {"PxnFeatureIntGet", true, true, PxnFeatureDataInt, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::int64_t value = 0;
             return sdk.PxnFeatureIntGet(with.handle, with.feature, &value);
         }},
        {"PxnFeatureIntSet", true, true, PxnFeatureDataInt, true,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureIntSet(with.handle, with.feature, 0);
         }},
        {"PxnFeatureIntRangeQuery", true, true, PxnFeatureDataInt, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::int64_t least = 0;
             std::int64_t greatest = 0;
             return sdk.PxnFeatureIntRangeQuery(with.handle, with.feature, &least, &greatest);
         }},
        {"PxnFeatureIntIncrementQuery", true, true, PxnFeatureDataInt, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::int64_t increment = 0;
             return sdk.PxnFeatureIntIncrementQuery(with.handle, with.feature, &increment);
         }},
        {"PxnFeatureIntValidValueSetQuery", true, true, PxnFeatureDataInt, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureIntValidValueSetQuery(with.handle, with.feature, nullptr, 0,
                                                        &found);
         }},
        {"PxnFeatureFloatGet", true, true, PxnFeatureDataFloat, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             double value = 0;
             return sdk.PxnFeatureFloatGet(with.handle, with.feature, &value);
         }},
        {"PxnFeatureFloatSet", true, true, PxnFeatureDataFloat, true,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureFloatSet(with.handle, with.feature, 0);
         }},
        {"PxnFeatureFloatRangeQuery", true, true, PxnFeatureDataFloat, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             double least = 0;
             double greatest = 0;
             return sdk.PxnFeatureFloatRangeQuery(with.handle, with.feature, &least, &greatest);
         }},
        {"PxnFeatureEnumGet", true, true, PxnFeatureDataEnum, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             const char* value = nullptr;
             return sdk.PxnFeatureEnumGet(with.handle, with.feature, &value);
         }},
        {"PxnFeatureEnumSet", true, true, PxnFeatureDataEnum, true,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureEnumSet(with.handle, with.feature, "");
         }},
        {"PxnFeatureEnumRangeQuery", true, true, PxnFeatureDataEnum, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureEnumRangeQuery(with.handle, with.feature, nullptr, 0, &found);
         }},
        {"PxnFeatureEnumIsAvailable", true, true, PxnFeatureDataEnum, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             PxnBool available = 0;
             return sdk.PxnFeatureEnumIsAvailable(with.handle, with.feature, "", &available);
         }},
        {"PxnFeatureEnumAsInt", true, true, PxnFeatureDataEnum, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::int64_t value = 0;
             return sdk.PxnFeatureEnumAsInt(with.handle, with.feature, "", &value);
         }},
        {"PxnFeatureEnumAsString", true, true, PxnFeatureDataEnum, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             const char* entry = nullptr;
             return sdk.PxnFeatureEnumAsString(with.handle, with.feature, 0, &entry);
         }},
        {"PxnFeatureEnumEntryGet", true, true, PxnFeatureDataEnum, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             PxnFeatureEnumEntry info{};
             return sdk.PxnFeatureEnumEntryGet(with.handle, with.feature, "", &info, sizeof info);
         }},
        {"PxnFeatureStringGet", true, true, PxnFeatureDataString, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t filled = 0;
             return sdk.PxnFeatureStringGet(with.handle, with.feature, nullptr, 0, &filled);
         }},
        {"PxnFeatureStringSet", true, true, PxnFeatureDataString, true,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureStringSet(with.handle, with.feature, "");
         }},
        {"PxnFeatureStringMaxlengthQuery", true, true, PxnFeatureDataString, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t length = 0;
             return sdk.PxnFeatureStringMaxlengthQuery(with.handle, with.feature, &length);
         }},
        {"PxnFeatureBoolGet", true, true, PxnFeatureDataBool, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             PxnBool value = 0;
             return sdk.PxnFeatureBoolGet(with.handle, with.feature, &value);
         }},
        {"PxnFeatureBoolSet", true, true, PxnFeatureDataBool, true,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureBoolSet(with.handle, with.feature, 0);
         }},
        {"PxnFeatureCommandRun", true, true, PxnFeatureDataCommand, true,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureCommandRun(with.handle, with.feature);
         }},
        {"PxnFeatureCommandIsDone", true, true, PxnFeatureDataCommand, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             PxnBool done = 0;
             return sdk.PxnFeatureCommandIsDone(with.handle, with.feature, &done);
         }},
        {"PxnFeatureRawGet", true, true, PxnFeatureDataRaw, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t filled = 0;
             return sdk.PxnFeatureRawGet(with.handle, with.feature, nullptr, 0, &filled);
         }},
        {"PxnFeatureRawSet", true, true, PxnFeatureDataRaw, true,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureRawSet(with.handle, with.feature, "", 0);
         }},
        {"PxnFeatureRawLengthQuery", true, true, PxnFeatureDataRaw, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t length = 0;
             return sdk.PxnFeatureRawLengthQuery(with.handle, with.feature, &length);
         }},
        {"PxnFeatureInvalidationRegister", true, true, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureInvalidationRegister(with.handle, with.feature, IgnoreChange,
                                                       nullptr);
         }},
        {"PxnFeatureInvalidationUnregister", true, true, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFeatureInvalidationUnregister(with.handle, with.feature, IgnoreChange);
         }},
        {"PxnPayloadSizeGet", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             std::uint32_t bytes = 0;
             return sdk.PxnPayloadSizeGet(with.handle, &bytes);
         }},
        {"PxnFrameAnnounce", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFrameAnnounce(with.handle, with.frame, sizeof *with.frame);
         }},
        {"PxnFrameRevoke", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFrameRevoke(with.handle, with.frame);
         }},
        {"PxnFrameRevokeAll", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnFrameRevokeAll(with.handle);
         }},
        {"PxnCaptureStart", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnCaptureStart(with.handle);
         }},
        {"PxnCaptureEnd", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnCaptureEnd(with.handle);
         }},
        {"PxnCaptureFrameQueue", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnCaptureFrameQueue(with.handle, with.frame, with.frameCallback);
         }},
        {"PxnCaptureFrameWait", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnCaptureFrameWait(with.handle, with.frame, 0);
         }},
        {"PxnCaptureQueueFlush", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnCaptureQueueFlush(with.handle);
         }},
        {"PxnTransportLayersList", false, false, kAny, false,
         [](const Sdk& sdk, const With&) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnTransportLayersList(nullptr, 0, &found, sizeof(PxnTransportLayerInfo));
         }},
        {"PxnInterfacesList", false, false, kAny, false,
         [](const Sdk& sdk, const With&) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnInterfacesList(nullptr, 0, &found, sizeof(PxnInterfaceInfo));
         }},
        {"PxnMemoryRead", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             char bytes[4] = {};
             std::uint32_t done = 0;
             return sdk.PxnMemoryRead(with.handle, 0, sizeof bytes, bytes, &done);
         }},
        {"PxnMemoryWrite", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             const char bytes[4] = {};
             std::uint32_t done = 0;
             return sdk.PxnMemoryWrite(with.handle, 0, sizeof bytes, bytes, &done);
         }},
        {"PxnSettingsSave", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnSettingsSave(with.handle, kNoPath, nullptr, 0);
         }},
        {"PxnSettingsLoad", true, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnSettingsLoad(with.handle, kNoPath, nullptr, 0);
         }},
        {"PxnChunkDataAccess", false, false, kAny, false,
         [](const Sdk& sdk, const With& with) -> PxnError {
             return sdk.PxnChunkDataAccess(with.frame, IgnoreChunks, nullptr);
         }},
};
static_assert(std::size(kCalls) + 3 == PXN_ENTRY_COUNT);

} // namespace

std::span<const Call> AllCalls() {
    return kCalls;
}

const Call& FindCall(const char* function) {
    return *std::find_if(std::begin(kCalls), std::end(kCalls), [&](const Call& call) {
        return std::strcmp(call.function, function) == 0;
    });
}

} // namespace conformance
