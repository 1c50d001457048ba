// entry_table.cpp - what the functions and callbacks of the SDK take and store
#include "pxnc/trace/entry_table.h"

#include <iterator>
#include <string_view>

namespace sdktrace {
namespace {

constexpr Parameter kHandleArgument{"handle", Kind::kHandle};
constexpr Parameter kCameraArgument{"camera", Kind::kHandle};
constexpr Parameter kNameArgument{"name", Kind::kText};
constexpr Parameter kEntryArgument{"entry", Kind::kText};
constexpr Parameter kSizeArgument{"size", Kind::kNumber};
constexpr Parameter kCapacityArgument{"capacity", Kind::kNumber};
constexpr Parameter kFrameArgument{"frame", Kind::kFrame};
constexpr Parameter kCallbackArgument{"callback", Kind::kCallback};
constexpr Parameter kContextArgument{"userContext", Kind::kContext};
constexpr Parameter kPathArgument{"path", Kind::kPath};
constexpr Parameter kSettingsArgument{"settings", Kind::kContext};
constexpr Parameter kFoundPlace{"found", Kind::kOutNumber};
constexpr Parameter kFilledPlace{"sizeFilled", Kind::kOutNumber};

constexpr Parameter Record(const char* name, RecordKind record) {
    return {name, Kind::kOutRecord, record};
}

constexpr Parameter Records(const char* name, RecordKind record, std::uint8_t limit) {
    return {name, Kind::kOutRecords, record, limit, static_cast<std::uint8_t>(limit + 1)};
}

constexpr Parameter Array(const char* name, Kind kind, std::uint8_t limit, std::uint8_t count) {
    return {name, kind, RecordKind::kNone, limit, count};
}

constexpr EntryRow kEntries[] = {
    {"PxnVersionQuery", {Record("info", RecordKind::kVersion), kSizeArgument}},
    {"PxnStartup", {Parameter{"configPath", Kind::kPath}}},
    {"PxnShutdown", {}},
    {"PxnCamerasList",
     {Records("cameras", RecordKind::kCamera, 1), kCapacityArgument, kFoundPlace, kSizeArgument}},
    {"PxnCameraInfoQueryByHandle",
     {kCameraArgument, Record("info", RecordKind::kCamera), kSizeArgument}},
    {"PxnCameraInfoQuery",
     {Parameter{"id", Kind::kText}, Record("info", RecordKind::kCamera), kSizeArgument}},
    {"PxnCameraOpen",
     {Parameter{"id", Kind::kText}, Parameter{"accessMode", Kind::kNumber},
      Parameter{"camera", Kind::kOutHandle}}},
    {"PxnCameraClose", {kCameraArgument}},
    {"PxnFeaturesList",
     {kHandleArgument, Records("features", RecordKind::kFeature, 2), kCapacityArgument, kFoundPlace,
      kSizeArgument}},
    {"PxnFeatureInfoQuery",
     {kHandleArgument, kNameArgument, Record("info", RecordKind::kFeature), kSizeArgument}},
    {"PxnFeatureListSelected",
     {kHandleArgument, kNameArgument, Records("features", RecordKind::kFeature, 3),
      kCapacityArgument, kFoundPlace, kSizeArgument}},
    {"PxnFeatureAccessQuery",
     {kHandleArgument, kNameArgument, Parameter{"readable", Kind::kOutFlag},
      Parameter{"writeable", Kind::kOutFlag}}},
    {"PxnFeatureIntGet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kOutInteger}}},
    {"PxnFeatureIntSet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kInteger}}},
    {"PxnFeatureIntRangeQuery",
     {kHandleArgument, kNameArgument, Parameter{"min", Kind::kOutInteger},
      Parameter{"max", Kind::kOutInteger}}},
    {"PxnFeatureIntIncrementQuery",
     {kHandleArgument, kNameArgument, Parameter{"increment", Kind::kOutInteger}}},
    {"PxnFeatureIntValidValueSetQuery",
     {kHandleArgument, kNameArgument, Array("buffer", Kind::kOutIntegers, 3, 4), kCapacityArgument,
      Parameter{"setSize", Kind::kOutNumber}}},
    {"PxnFeatureFloatGet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kOutFloat}}},
    {"PxnFeatureFloatSet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kFloat}}},
    {"PxnFeatureFloatRangeQuery",
     {kHandleArgument, kNameArgument, Parameter{"min", Kind::kOutFloat},
      Parameter{"max", Kind::kOutFloat}}},
    {"PxnFeatureEnumGet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kOutText}}},
    {"PxnFeatureEnumSet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kText}}},
    {"PxnFeatureEnumRangeQuery",
     {kHandleArgument, kNameArgument, Array("entries", Kind::kOutTexts, 3, 4), kCapacityArgument,
      kFoundPlace}},
    {"PxnFeatureEnumIsAvailable",
     {kHandleArgument, kNameArgument, kEntryArgument, Parameter{"available", Kind::kOutFlag}}},
    {"PxnFeatureEnumAsInt",
     {kHandleArgument, kNameArgument, kEntryArgument, Parameter{"value", Kind::kOutInteger}}},
    {"PxnFeatureEnumAsString",
     {kHandleArgument, kNameArgument, Parameter{"value", Kind::kInteger},
      Parameter{"entry", Kind::kOutText}}},
    {"PxnFeatureEnumEntryGet",
     {kHandleArgument, kNameArgument, kEntryArgument, Record("info", RecordKind::kEnumEntry),
      kSizeArgument}},
    {"PxnFeatureStringGet",
     {kHandleArgument, kNameArgument, Array("buffer", Kind::kOutChars, 3, 4),
      Parameter{"bufferSize", Kind::kNumber}, kFilledPlace}},
    {"PxnFeatureStringSet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kText}}},
    {"PxnFeatureStringMaxlengthQuery",
     {kHandleArgument, kNameArgument, Parameter{"maxLength", Kind::kOutNumber}}},
    {"PxnFeatureBoolGet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kOutFlag}}},
    {"PxnFeatureBoolSet", {kHandleArgument, kNameArgument, Parameter{"value", Kind::kFlag}}},
    {"PxnFeatureCommandRun", {kHandleArgument, kNameArgument}},
    {"PxnFeatureCommandIsDone",
     {kHandleArgument, kNameArgument, Parameter{"done", Kind::kOutFlag}}},
    {"PxnFeatureRawGet",
     {kHandleArgument, kNameArgument, Array("buffer", Kind::kOutBytes, 3, 4),
      Parameter{"bufferSize", Kind::kNumber}, kFilledPlace}},
    {"PxnFeatureRawSet",
     {kHandleArgument, kNameArgument, Array("buffer", Kind::kBytes, 3, 0),
      Parameter{"bufferSize", Kind::kNumber}}},
    {"PxnFeatureRawLengthQuery",
     {kHandleArgument, kNameArgument, Parameter{"length", Kind::kOutNumber}}},
    {"PxnFeatureInvalidationRegister",
     {kHandleArgument, kNameArgument, kCallbackArgument, kContextArgument}},
    {"PxnFeatureInvalidationUnregister", {kHandleArgument, kNameArgument, kCallbackArgument}},
    {"PxnPayloadSizeGet", {kHandleArgument, Parameter{"payloadSize", Kind::kOutNumber}}},
    {"PxnFrameAnnounce",
     {kHandleArgument, Parameter{"frame", Kind::kAnnouncedFrame}, kSizeArgument}},
    {"PxnFrameRevoke", {kHandleArgument, kFrameArgument}},
    {"PxnFrameRevokeAll", {kHandleArgument}},
    {"PxnCaptureStart", {kHandleArgument}},
    {"PxnCaptureEnd", {kHandleArgument}},
    {"PxnCaptureFrameQueue", {kHandleArgument, kFrameArgument, kCallbackArgument}},
    {"PxnCaptureFrameWait",
     {kHandleArgument, Parameter{"frame", Kind::kFrameToFill},
      Parameter{"timeout", Kind::kNumber}}},
    {"PxnCaptureQueueFlush", {kHandleArgument}},
    {"PxnTransportLayersList",
     {Records("layers", RecordKind::kTransportLayer, 1), kCapacityArgument, kFoundPlace,
      kSizeArgument}},
    {"PxnInterfacesList",
     {Records("interfaces", RecordKind::kInterface, 1), kCapacityArgument, kFoundPlace,
      kSizeArgument}},
    {"PxnMemoryRead",
     {kHandleArgument, Parameter{"address", Kind::kAddress}, kSizeArgument,
      Array("buffer", Kind::kOutBytes, 2, 4), Parameter{"sizeComplete", Kind::kOutNumber}}},
    {"PxnMemoryWrite",
     {kHandleArgument, Parameter{"address", Kind::kAddress}, kSizeArgument,
      Array("buffer", Kind::kBytes, 2, 0), Parameter{"sizeComplete", Kind::kOutNumber}}},
    {"PxnSettingsSave", {kHandleArgument, kPathArgument, kSettingsArgument, kSizeArgument}},
    {"PxnSettingsLoad", {kHandleArgument, kPathArgument, kSettingsArgument, kSizeArgument}},
    {"PxnChunkDataAccess", {kFrameArgument, kCallbackArgument, kContextArgument}},
    {"PxnControl",
     {Parameter{"command", Kind::kText}, Array("answer", Kind::kOutAnswer, 2, 0),
      Parameter{"answerSize", Kind::kNumber}}},
    {"FrameCallback",
     {kCallbackArgument, kCameraArgument, Parameter{"stream", Kind::kHandle},
      Parameter{"frame", Kind::kFilledFrame}}},
    {"InvalidationCallback", {kCallbackArgument, kHandleArgument, kNameArgument, kContextArgument}},
    {"ChunkCallback",
     {kCallbackArgument, Parameter{"featureAccess", Kind::kHandle}, kContextArgument}},
};

static_assert(std::size(kEntries) == kEntryCount);
#define PXN_TRACE_IN_ORDER(entry)                                                                  \
    static_assert(std::string_view(kEntries[static_cast<std::size_t>(Entry::k##entry)].name) ==    \
                  #entry);
PXN_ENTRIES(PXN_TRACE_IN_ORDER)
#undef PXN_TRACE_IN_ORDER

#define PXN_TRACE_FIELD(record, field, kind)                                                       \
    { #field, offsetof(record, field), FieldKind::kind }

constexpr Field kVersionFields[] = {
    PXN_TRACE_FIELD(PxnVersionInfo, major, kNumber),
    PXN_TRACE_FIELD(PxnVersionInfo, minor, kNumber),
    PXN_TRACE_FIELD(PxnVersionInfo, patch, kNumber),
};
constexpr Field kCameraFields[] = {
    PXN_TRACE_FIELD(PxnCameraInfo, cameraIdString, kText),
    PXN_TRACE_FIELD(PxnCameraInfo, cameraIdExtended, kText),
    PXN_TRACE_FIELD(PxnCameraInfo, cameraName, kText),
    PXN_TRACE_FIELD(PxnCameraInfo, modelName, kText),
    PXN_TRACE_FIELD(PxnCameraInfo, serialString, kText),
    PXN_TRACE_FIELD(PxnCameraInfo, transportLayerHandle, kHandle),
    PXN_TRACE_FIELD(PxnCameraInfo, interfaceHandle, kHandle),
    PXN_TRACE_FIELD(PxnCameraInfo, localDeviceHandle, kHandle),
    PXN_TRACE_FIELD(PxnCameraInfo, streamHandles, kStreams),
    PXN_TRACE_FIELD(PxnCameraInfo, streamCount, kNumber),
    PXN_TRACE_FIELD(PxnCameraInfo, permittedAccess, kNumber),
};
constexpr Field kInterfaceFields[] = {
    PXN_TRACE_FIELD(PxnInterfaceInfo, interfaceIdString, kText),
    PXN_TRACE_FIELD(PxnInterfaceInfo, interfaceType, kNumber),
    PXN_TRACE_FIELD(PxnInterfaceInfo, interfaceName, kText),
    PXN_TRACE_FIELD(PxnInterfaceInfo, interfaceHandle, kHandle),
    PXN_TRACE_FIELD(PxnInterfaceInfo, transportLayerHandle, kHandle),
};
constexpr Field kTransportLayerFields[] = {
    PXN_TRACE_FIELD(PxnTransportLayerInfo, transportLayerIdString, kText),
    PXN_TRACE_FIELD(PxnTransportLayerInfo, transportLayerName, kText),
    PXN_TRACE_FIELD(PxnTransportLayerInfo, transportLayerModelName, kText),
    PXN_TRACE_FIELD(PxnTransportLayerInfo, transportLayerVendor, kText),
    PXN_TRACE_FIELD(PxnTransportLayerInfo, transportLayerVersion, kText),
    PXN_TRACE_FIELD(PxnTransportLayerInfo, transportLayerPath, kText),
    PXN_TRACE_FIELD(PxnTransportLayerInfo, transportLayerHandle, kHandle),
    PXN_TRACE_FIELD(PxnTransportLayerInfo, transportLayerType, kNumber),
};
constexpr Field kFeatureFields[] = {
    PXN_TRACE_FIELD(PxnFeatureInfo, name, kText),
    PXN_TRACE_FIELD(PxnFeatureInfo, category, kText),
    PXN_TRACE_FIELD(PxnFeatureInfo, displayName, kText),
    PXN_TRACE_FIELD(PxnFeatureInfo, tooltip, kText),
    PXN_TRACE_FIELD(PxnFeatureInfo, description, kText),
    PXN_TRACE_FIELD(PxnFeatureInfo, sfncNamespace, kText),
    PXN_TRACE_FIELD(PxnFeatureInfo, unit, kText),
    PXN_TRACE_FIELD(PxnFeatureInfo, representation, kText),
    PXN_TRACE_FIELD(PxnFeatureInfo, featureDataType, kNumber),
    PXN_TRACE_FIELD(PxnFeatureInfo, featureFlags, kNumber),
    PXN_TRACE_FIELD(PxnFeatureInfo, pollingTime, kNumber),
    PXN_TRACE_FIELD(PxnFeatureInfo, visibility, kNumber),
    PXN_TRACE_FIELD(PxnFeatureInfo, isStreamable, kByte),
    PXN_TRACE_FIELD(PxnFeatureInfo, hasSelectedFeatures, kByte),
};
constexpr Field kEnumEntryFields[] = {
    PXN_TRACE_FIELD(PxnFeatureEnumEntry, name, kText),
    PXN_TRACE_FIELD(PxnFeatureEnumEntry, displayName, kText),
    PXN_TRACE_FIELD(PxnFeatureEnumEntry, tooltip, kText),
    PXN_TRACE_FIELD(PxnFeatureEnumEntry, description, kText),
    PXN_TRACE_FIELD(PxnFeatureEnumEntry, intValue, kInteger),
    PXN_TRACE_FIELD(PxnFeatureEnumEntry, visibility, kNumber),
};
constexpr Field kFrameFields[] = {
    PXN_TRACE_FIELD(PxnFrame, receiveStatus, kSigned),
    PXN_TRACE_FIELD(PxnFrame, receiveFlags, kNumber),
    PXN_TRACE_FIELD(PxnFrame, frameId, kUnsigned),
    PXN_TRACE_FIELD(PxnFrame, timestamp, kUnsigned),
    PXN_TRACE_FIELD(PxnFrame, pixelFormat, kNumber),
    PXN_TRACE_FIELD(PxnFrame, width, kNumber),
    PXN_TRACE_FIELD(PxnFrame, height, kNumber),
    PXN_TRACE_FIELD(PxnFrame, offsetX, kNumber),
    PXN_TRACE_FIELD(PxnFrame, offsetY, kNumber),
    PXN_TRACE_FIELD(PxnFrame, imageSize, kNumber),
    PXN_TRACE_FIELD(PxnFrame, imageData, kImageOffset),
    PXN_TRACE_FIELD(PxnFrame, payloadType, kNumber),
    PXN_TRACE_FIELD(PxnFrame, chunkDataPresent, kNumber),
};
#undef PXN_TRACE_FIELD

template <typename T, std::size_t kFields>
constexpr RecordRow RecordOf(const Field (&fields)[kFields]) {
    return {sizeof(T), fields, kFields};
}

constexpr RecordRow kRecords[] = {
    RecordOf<PxnVersionInfo>(kVersionFields),
    RecordOf<PxnCameraInfo>(kCameraFields),
    RecordOf<PxnInterfaceInfo>(kInterfaceFields),
    RecordOf<PxnTransportLayerInfo>(kTransportLayerFields),
    RecordOf<PxnFeatureInfo>(kFeatureFields),
    RecordOf<PxnFeatureEnumEntry>(kEnumEntryFields),
    RecordOf<PxnFrame>(kFrameFields),
};
static_assert(std::size(kRecords) == static_cast<std::size_t>(RecordKind::kNone));

} // namespace

const EntryRow& RowOf(Entry entry) {
    return kEntries[static_cast<std::size_t>(entry)];
}

const RecordRow& RowOf(RecordKind kind) {
    return kRecords[static_cast<std::size_t>(kind)];
}

bool IsFilled(Entry entry, std::int32_t result) {
    switch (entry) {
    case Entry::kPxnControl: // a refusal has its reason there
        return true;
    case Entry::kPxnMemoryRead:
    case Entry::kPxnMemoryWrite:
        return result == PxnErrSuccess || result == PxnErrIncomplete;
    default:
        return result == PxnErrSuccess || result == PxnErrMoreData;
    }
}

} // namespace sdktrace
