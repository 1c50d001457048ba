// incomplete_calls.cpp - calls with an argument missing or a record of another size
#include "pxnc/conformance/calls.h"

#include <cstddef>

namespace conformance {
namespace {

using Functions = SdkFunctions;

constexpr const wchar_t* kNoSettingsPath = L"there-is-no-such-directory/settings.xml";

void PXN_CALL NeverCalled(PxnHandle, const char*, void*) {}
PxnError PXN_CALL NeverCalledForChunks(PxnHandle, void*) {
    return PxnErrSuccess;
}

constexpr IncompleteCall kIncompleteCalls[] =
    {
        {"PxnCamerasList without found", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             return sdk.PxnCamerasList(nullptr, 0, nullptr, sizeof(PxnCameraInfo));
         }},
        {"PxnCamerasList without array but with a capacity", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnCamerasList(nullptr, 1, &found, sizeof(PxnCameraInfo));
         }},
        {"PxnTransportLayersList without found", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             return sdk.PxnTransportLayersList(nullptr, 0, nullptr, sizeof(PxnTransportLayerInfo));
         }},
        {"PxnTransportLayersList without array but with a capacity", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnTransportLayersList(nullptr, 1, &found, sizeof(PxnTransportLayerInfo));
         }},
        {"PxnInterfacesList without found", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             return sdk.PxnInterfacesList(nullptr, 0, nullptr, sizeof(PxnInterfaceInfo));
         }},
        {"PxnInterfacesList without array but with a capacity", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnInterfacesList(nullptr, 1, &found, sizeof(PxnInterfaceInfo));
         }},
        {"PxnCameraInfoQueryByHandle without info", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnCameraInfoQueryByHandle(handle, nullptr, sizeof(PxnCameraInfo));
         }},
        {"PxnCameraInfoQuery without id", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             PxnCameraInfo info{};
             return sdk.PxnCameraInfoQuery(nullptr, &info, sizeof info);
         }},
        {"PxnCameraInfoQuery without info", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             return sdk.PxnCameraInfoQuery(kNoCamera, nullptr, sizeof(PxnCameraInfo));
         }},
        {"PxnCameraOpen without id", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             PxnHandle camera = nullptr;
             return sdk.PxnCameraOpen(nullptr, PxnAccessModeFull, &camera);
         }},
        {"PxnCameraOpen without camera", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             return sdk.PxnCameraOpen(kNoCamera, PxnAccessModeFull, nullptr);
         }},
        {"PxnCameraOpen with access mode 0", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             PxnHandle camera = nullptr;
             return sdk.PxnCameraOpen(kNoCamera, 0, &camera);
         }},
        {"PxnCameraOpen with access mode 4", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             PxnHandle camera = nullptr;
             return sdk.PxnCameraOpen(kNoCamera, PxnAccessModeUnknown, &camera);
         }},
        {"PxnFeaturesList without found", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeaturesList(handle, nullptr, 0, nullptr, sizeof(PxnFeatureInfo));
         }},
        {"PxnFeaturesList without array but with a capacity", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeaturesList(handle, nullptr, 1, &found, sizeof(PxnFeatureInfo));
         }},
        {"PxnFeatureInfoQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnFeatureInfo info{};
             return sdk.PxnFeatureInfoQuery(handle, nullptr, &info, sizeof info);
         }},
        {"PxnFeatureInfoQuery without info", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureInfoQuery(handle, kNoFeature, nullptr, sizeof(PxnFeatureInfo));
         }},
        {"PxnFeatureListSelected without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureListSelected(handle, nullptr, nullptr, 0, &found,
                                               sizeof(PxnFeatureInfo));
         }},
        {"PxnFeatureListSelected without found", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureListSelected(handle, kNoFeature, nullptr, 0, nullptr,
                                               sizeof(PxnFeatureInfo));
         }},
        {"PxnFeatureListSelected without array but with a capacity", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureListSelected(handle, kNoFeature, nullptr, 1, &found,
                                               sizeof(PxnFeatureInfo));
         }},
        {"PxnFeatureAccessQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnBool readable = 0;
             return sdk.PxnFeatureAccessQuery(handle, nullptr, &readable, nullptr);
         }},
        {"PxnFeatureAccessQuery without readable and writeable", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureAccessQuery(handle, kNoFeature, nullptr, nullptr);
         }},
        {"PxnFeatureIntGet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::int64_t value = 0;
             return sdk.PxnFeatureIntGet(handle, nullptr, &value);
         }},
        {"PxnFeatureIntGet without value", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureIntGet(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureIntSet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureIntSet(handle, nullptr, 0);
         }},
        {"PxnFeatureIntRangeQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::int64_t least = 0;
             std::int64_t greatest = 0;
             return sdk.PxnFeatureIntRangeQuery(handle, nullptr, &least, &greatest);
         }},
        {"PxnFeatureIntRangeQuery without min", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::int64_t greatest = 0;
             return sdk.PxnFeatureIntRangeQuery(handle, kNoFeature, nullptr, &greatest);
         }},
        {"PxnFeatureIntRangeQuery without max", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::int64_t least = 0;
             return sdk.PxnFeatureIntRangeQuery(handle, kNoFeature, &least, nullptr);
         }},
        {"PxnFeatureFloatRangeQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             double least = 0;
             double greatest = 0;
             return sdk.PxnFeatureFloatRangeQuery(handle, nullptr, &least, &greatest);
         }},
        {"PxnFeatureFloatRangeQuery without min", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             double greatest = 0;
             return sdk.PxnFeatureFloatRangeQuery(handle, kNoFeature, nullptr, &greatest);
         }},
        {"PxnFeatureFloatRangeQuery without max", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             double least = 0;
             return sdk.PxnFeatureFloatRangeQuery(handle, kNoFeature, &least, nullptr);
         }},
        {"PxnFeatureIntIncrementQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::int64_t increment = 0;
             return sdk.PxnFeatureIntIncrementQuery(handle, nullptr, &increment);
         }},
        {"PxnFeatureIntIncrementQuery without increment", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureIntIncrementQuery(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureIntValidValueSetQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureIntValidValueSetQuery(handle, nullptr, nullptr, 0, &found);
         }},
        {"PxnFeatureIntValidValueSetQuery without setSize", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureIntValidValueSetQuery(handle, kNoFeature, nullptr, 0, nullptr);
         }},
        {"PxnFeatureIntValidValueSetQuery without buffer but with a capacity", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureIntValidValueSetQuery(handle, kNoFeature, nullptr, 1, &found);
         }},
        {"PxnFeatureFloatGet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             double value = 0;
             return sdk.PxnFeatureFloatGet(handle, nullptr, &value);
         }},
        {"PxnFeatureFloatGet without value", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureFloatGet(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureFloatSet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureFloatSet(handle, nullptr, 0);
         }},
        {"PxnFeatureEnumGet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             const char* value = nullptr;
             return sdk.PxnFeatureEnumGet(handle, nullptr, &value);
         }},
        {"PxnFeatureEnumGet without value", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureEnumGet(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureEnumSet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureEnumSet(handle, nullptr, "");
         }},
        {"PxnFeatureEnumSet without value", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureEnumSet(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureEnumRangeQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureEnumRangeQuery(handle, nullptr, nullptr, 0, &found);
         }},
        {"PxnFeatureEnumRangeQuery without found", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureEnumRangeQuery(handle, kNoFeature, nullptr, 0, nullptr);
         }},
        {"PxnFeatureEnumRangeQuery without entries but with a capacity", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t found = 0;
             return sdk.PxnFeatureEnumRangeQuery(handle, kNoFeature, nullptr, 1, &found);
         }},
        {"PxnFeatureEnumIsAvailable without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnBool available = 0;
             return sdk.PxnFeatureEnumIsAvailable(handle, nullptr, "", &available);
         }},
        {"PxnFeatureEnumIsAvailable without entry", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnBool available = 0;
             return sdk.PxnFeatureEnumIsAvailable(handle, kNoFeature, nullptr, &available);
         }},
        {"PxnFeatureEnumIsAvailable without available", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureEnumIsAvailable(handle, kNoFeature, "", nullptr);
         }},
        {"PxnFeatureEnumAsInt without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::int64_t value = 0;
             return sdk.PxnFeatureEnumAsInt(handle, nullptr, "", &value);
         }},
        {"PxnFeatureEnumAsInt without entry", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::int64_t value = 0;
             return sdk.PxnFeatureEnumAsInt(handle, kNoFeature, nullptr, &value);
         }},
        {"PxnFeatureEnumAsInt without value", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureEnumAsInt(handle, kNoFeature, "", nullptr);
         }},
        {"PxnFeatureEnumAsString without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             const char* entry = nullptr;
             return sdk.PxnFeatureEnumAsString(handle, nullptr, 0, &entry);
         }},
        {"PxnFeatureEnumAsString without entry", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureEnumAsString(handle, kNoFeature, 0, nullptr);
         }},
        {"PxnFeatureEnumEntryGet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnFeatureEnumEntry info{};
             return sdk.PxnFeatureEnumEntryGet(handle, nullptr, "", &info, sizeof info);
         }},
        {"PxnFeatureEnumEntryGet without entry", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnFeatureEnumEntry info{};
             return sdk.PxnFeatureEnumEntryGet(handle, kNoFeature, nullptr, &info, sizeof info);
         }},
        {"PxnFeatureEnumEntryGet without info", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureEnumEntryGet(handle, kNoFeature, "", nullptr,
                                               sizeof(PxnFeatureEnumEntry));
         }},
        {"PxnFeatureStringGet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t filled = 0;
             return sdk.PxnFeatureStringGet(handle, nullptr, nullptr, 0, &filled);
         }},
        {"PxnFeatureStringGet without sizeFilled", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureStringGet(handle, kNoFeature, nullptr, 0, nullptr);
         }},
        {"PxnFeatureStringGet without buffer but with a size", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t filled = 0;
             return sdk.PxnFeatureStringGet(handle, kNoFeature, nullptr, 1, &filled);
         }},
        {"PxnFeatureRawGet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t filled = 0;
             return sdk.PxnFeatureRawGet(handle, nullptr, nullptr, 0, &filled);
         }},
        {"PxnFeatureRawGet without sizeFilled", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureRawGet(handle, kNoFeature, nullptr, 0, nullptr);
         }},
        {"PxnFeatureRawGet without buffer but with a size", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t filled = 0;
             return sdk.PxnFeatureRawGet(handle, kNoFeature, nullptr, 1, &filled);
         }},
        {"PxnFeatureStringSet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureStringSet(handle, nullptr, "");
         }},
        {"PxnFeatureStringSet without value", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureStringSet(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureStringMaxlengthQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t maxLength = 0;
             return sdk.PxnFeatureStringMaxlengthQuery(handle, nullptr, &maxLength);
         }},
        {"PxnFeatureStringMaxlengthQuery without maxLength", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureStringMaxlengthQuery(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureBoolGet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnBool value = 0;
             return sdk.PxnFeatureBoolGet(handle, nullptr, &value);
         }},
        {"PxnFeatureBoolGet without value", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureBoolGet(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureBoolSet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureBoolSet(handle, nullptr, 0);
         }},
        {"PxnFeatureCommandRun without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureCommandRun(handle, nullptr);
         }},
        {"PxnFeatureCommandIsDone without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnBool done = 0;
             return sdk.PxnFeatureCommandIsDone(handle, nullptr, &done);
         }},
        {"PxnFeatureCommandIsDone without done", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureCommandIsDone(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureRawSet without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureRawSet(handle, nullptr, "", 0);
         }},
        {"PxnFeatureRawSet without buffer", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureRawSet(handle, kNoFeature, nullptr, 0);
         }},
        {"PxnFeatureRawLengthQuery without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t length = 0;
             return sdk.PxnFeatureRawLengthQuery(handle, nullptr, &length);
         }},
        {"PxnFeatureRawLengthQuery without length", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureRawLengthQuery(handle, kNoFeature, nullptr);
         }},
        {"PxnFeatureInvalidationRegister without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureInvalidationRegister(handle, nullptr, NeverCalled, nullptr);
         }},
        {"PxnFeatureInvalidationRegister without callback", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureInvalidationRegister(handle, kNoFeature, nullptr, nullptr);
         }},
        {"PxnFeatureInvalidationUnregister without name", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureInvalidationUnregister(handle, nullptr, NeverCalled);
         }},
        {"PxnFeatureInvalidationUnregister without callback", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFeatureInvalidationUnregister(handle, kNoFeature, nullptr);
         }},
        {"PxnPayloadSizeGet without payloadSize", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnPayloadSizeGet(handle, nullptr);
         }},
        {"PxnFrameAnnounce without frame", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFrameAnnounce(handle, nullptr, sizeof(PxnFrame));
         }},
        {"PxnFrameAnnounce without buffer but with a size", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             PxnFrame frame{};
             frame.bufferSize = 1;
             return sdk.PxnFrameAnnounce(handle, &frame, sizeof frame);
         }},
        {"PxnFrameRevoke without frame", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnFrameRevoke(handle, nullptr);
         }},
        {"PxnCaptureFrameQueue without frame", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnCaptureFrameQueue(handle, nullptr, nullptr);
         }},
        {"PxnCaptureFrameWait without frame", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnCaptureFrameWait(handle, nullptr, 0);
         }},
        {"PxnMemoryRead without buffer", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t done = 0;
             return sdk.PxnMemoryRead(handle, 0, 4, nullptr, &done);
         }},
        {"PxnMemoryRead without sizeComplete", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             char bytes[4] = {};
             return sdk.PxnMemoryRead(handle, 0, sizeof bytes, bytes, nullptr);
         }},
        {"PxnMemoryWrite without buffer", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             std::uint32_t done = 0;
             return sdk.PxnMemoryWrite(handle, 0, 4, nullptr, &done);
         }},
        {"PxnMemoryWrite without sizeComplete", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             const char bytes[4] = {};
             return sdk.PxnMemoryWrite(handle, 0, sizeof bytes, bytes, nullptr);
         }},
        {"PxnSettingsSave without path", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnSettingsSave(handle, nullptr, nullptr, 0);
         }},
        {"PxnSettingsSave without settings but with a size", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnSettingsSave(handle, kNoSettingsPath, nullptr, 4);
         }},
        {"PxnSettingsLoad without path", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnSettingsLoad(handle, nullptr, nullptr, 0);
         }},
        {"PxnSettingsLoad without settings but with a size", true,
         [](const Functions& sdk, PxnHandle handle) -> PxnError {
             return sdk.PxnSettingsLoad(handle, kNoSettingsPath, nullptr, 4);
         }},
        {"PxnChunkDataAccess without frame", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             return sdk.PxnChunkDataAccess(nullptr, NeverCalledForChunks, nullptr);
         }},
        {"PxnChunkDataAccess without callback", false,
         [](const Functions& sdk, PxnHandle) -> PxnError {
             const PxnFrame frame{};
             return sdk.PxnChunkDataAccess(&frame, nullptr, nullptr);
         }},
};

constexpr SizedCall kSizedCalls[] = {
    {"PxnCamerasList", sizeof(PxnCameraInfo), false,
     [](const Functions& sdk, PxnHandle, std::uint32_t size) -> PxnError {
         std::uint32_t found = 0;
         return sdk.PxnCamerasList(nullptr, 0, &found, size);
     }},
    {"PxnTransportLayersList", sizeof(PxnTransportLayerInfo), false,
     [](const Functions& sdk, PxnHandle, std::uint32_t size) -> PxnError {
         std::uint32_t found = 0;
         return sdk.PxnTransportLayersList(nullptr, 0, &found, size);
     }},
    {"PxnInterfacesList", sizeof(PxnInterfaceInfo), false,
     [](const Functions& sdk, PxnHandle, std::uint32_t size) -> PxnError {
         std::uint32_t found = 0;
         return sdk.PxnInterfacesList(nullptr, 0, &found, size);
     }},
    {"PxnCameraInfoQueryByHandle", sizeof(PxnCameraInfo), true,
     [](const Functions& sdk, PxnHandle handle, std::uint32_t size) -> PxnError {
         PxnCameraInfo info{};
         return sdk.PxnCameraInfoQueryByHandle(handle, &info, size);
     }},
    {"PxnCameraInfoQuery", sizeof(PxnCameraInfo), false,
     [](const Functions& sdk, PxnHandle, std::uint32_t size) -> PxnError {
         PxnCameraInfo info{};
         return sdk.PxnCameraInfoQuery(kNoCamera, &info, size);
     }},
    {"PxnFeaturesList", sizeof(PxnFeatureInfo), true,
     [](const Functions& sdk, PxnHandle handle, std::uint32_t size) -> PxnError {
         std::uint32_t found = 0;
         return sdk.PxnFeaturesList(handle, nullptr, 0, &found, size);
     }},
    {"PxnFeatureInfoQuery", sizeof(PxnFeatureInfo), true,
     [](const Functions& sdk, PxnHandle handle, std::uint32_t size) -> PxnError {
         PxnFeatureInfo info{};
         return sdk.PxnFeatureInfoQuery(handle, kNoFeature, &info, size);
     }},
    {"PxnFeatureListSelected", sizeof(PxnFeatureInfo), true,
     [](const Functions& sdk, PxnHandle handle, std::uint32_t size) -> PxnError {
         std::uint32_t found = 0;
         return sdk.PxnFeatureListSelected(handle, kNoFeature, nullptr, 0, &found, size);
     }},
    {"PxnFeatureEnumEntryGet", sizeof(PxnFeatureEnumEntry), true,
     [](const Functions& sdk, PxnHandle handle, std::uint32_t size) -> PxnError {
         PxnFeatureEnumEntry info{};
         return sdk.PxnFeatureEnumEntryGet(handle, kNoFeature, "", &info, size);
     }},
    {"PxnFrameAnnounce", sizeof(PxnFrame), true,
     [](const Functions& sdk, PxnHandle handle, std::uint32_t size) -> PxnError {
         const PxnFrame frame{};
         return sdk.PxnFrameAnnounce(handle, &frame, size);
     }},
};

} // namespace

std::span<const IncompleteCall> IncompleteCalls() {
    return kIncompleteCalls;
}

std::span<const SizedCall> SizedCalls() {
    return kSizedCalls;
}

} // namespace conformance
