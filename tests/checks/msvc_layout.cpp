// msvc_layout.cpp - sizes, offsets and types of the interface, for the Microsoft ABI
#include "grabber/pyxen_grabber.h"
#include "mivora/module_entry.h"
#include "mivora/module_loader.h"
#include "mivora/module_services.h"

#include <cstddef>
#include <string_view>
#include <type_traits>

// ---- types that the signatures name ----

template <typename Type, typename Expected>
inline constexpr bool kIs = std::is_same_v<Type, Expected>;
template <typename Enumeration, typename Expected>
inline constexpr bool kIsEnumerationOf = kIs<std::underlying_type_t<Enumeration>, Expected>;

static_assert(kIs<MV_WINDOW, void*>);
static_assert(kIs<PxnHandle, void*>);
static_assert(kIsEnumerationOf<MV_ERRCODE, int>);
static_assert(kIsEnumerationOf<MV_DLG_EXITCODE, int>);
static_assert(kIsEnumerationOf<MV_COLORCODING, int>);
static_assert(kIsEnumerationOf<MV_INTERLACE, int>);
static_assert(kIsEnumerationOf<MV_GRABBERFEATURE, unsigned>);
static_assert(kIsEnumerationOf<MV_CMD_CHANNEL, unsigned>);
static_assert(kIsEnumerationOf<EMV_FEATURE_ID, unsigned>);
static_assert(kIsEnumerationOf<EMV_FEATURE_STATUS, unsigned>);
static_assert(kIsEnumerationOf<MV_SERVICE_RESULT, int>);
static_assert(kIsEnumerationOf<MV_FEATURE_TYPE, unsigned>);
static_assert(kIsEnumerationOf<MV_FEATURE_VISIBILITY, unsigned>);
static_assert(kIsEnumerationOf<MV_FRAME_PICTURE, unsigned>);
static_assert(kIsEnumerationOf<MV_FRAME_STATUS, int>);
static_assert(kIs<int32_t, int>);
static_assert(kIs<uint32_t, unsigned>);
static_assert(kIs<uint64_t, unsigned long long>);
static_assert(kIs<uint8_t, unsigned char>);
static_assert(kIs<MV_POST_PROCESS_CALLBACK, void (*)(uint64_t, uint32_t, void*)>);
static_assert(kIs<MV_CAM_CFG_CHANGE_CALLBACK, void (*)(void*)>);
static_assert(kIs<MV_CAM_CNTRL_CALLBACK, uint32_t (*)(uint32_t, void*)>);
static_assert(kIs<MV_DIALOG_UPDATE_CALLBACK, void (*)(uint32_t, void*)>);
static_assert(kIs<MV_TEXT_RECEIVER, void (*)(const char*, void*)>);
static_assert(kIs<MV_DATA_RECEIVER, void (*)(const char*, const void*, uint64_t, void*)>);
static_assert(kIs<MV_FEATURE_RECEIVER, void (*)(const MV_FEATURE_DESCRIPTION*, void*)>);
static_assert(kIs<MV_VALUE_RECEIVER, void (*)(const MV_FEATURE_VALUE*, void*)>);
static_assert(kIs<MV_CHUNK_RECEIVER, void (*)(const char*, const MV_FEATURE_VALUE*, void*)>);
static_assert(kIs<MV_CHANGE_RECEIVER, void (*)(const char*, const char*, void*)>);
static_assert(kIs<MV_FRAME_RECEIVER, void (*)(const MV_FRAME_INFO*, void*)>);
static_assert(kIs<MV_CAMERA_RECEIVER, void (*)(const MV_CAMERA_DESCRIPTION*, void*)>);
static_assert(kIs<MV_SETTING_RECEIVER, void (*)(const MV_SETTING*, void*)>);

// ---- exported functions ----

static_assert(kIs<MV_CREATE_GRABBER, CMivoraGrabber* (*)(void*)>);
static_assert(kIs<MV_DELETE_GRABBER, void (*)(CMivoraGrabber*)>);
static_assert(kIs<MV_MODULE_INTERFACE_QUERY, const MV_MODULE_INTERFACE* (*)()>);
static_assert(kIs<MV_SERVICES_QUERY, IMivoraModuleServices* (*)(CMivoraGrabber*)>);
static_assert(std::string_view(kMvCreateGrabberName) == "CreateGrabberInstance");
static_assert(std::string_view(kMvDeleteGrabberName) == "DeleteGrabberInstance");
static_assert(std::string_view(kMvModuleInterfaceName) == "MivoraModuleInterface");
static_assert(std::string_view(kMvCompilerFamily) == "Microsoft C++ ABI");
static_assert(kIs<decltype(CreateCmdSerialInstance), CCmdChannel*()>);
static_assert(kIs<decltype(DeleteCmdSerialInstance), void(CCmdChannel*)>);
static_assert(kIs<decltype(InitGrabberSectStr), void(char*, uint32_t, int32_t)>);
static_assert(kIs<decltype(MivoraErrorText), const char*(int32_t)>);
static_assert(kIs<decltype(MivoraFormatLogText), size_t(char*, size_t, const char*, va_list)>);
static_assert(kIs<decltype(MivoraInstallLogSink), void(ILogSink*)>);
static_assert(kIs<decltype(MivoraInstalledLogSink), ILogSink*()>);

// ---- classes: a table of virtual operations, if any, and one pointer ----

static_assert(sizeof(ILogSink) == 8);
static_assert(sizeof(ICamCntrlDialog) == 8);
static_assert(sizeof(CIniFile) == 8);
static_assert(sizeof(CModuleLoader) == 8);
static_assert(sizeof(IMivoraModuleServices) == 8);
static_assert(sizeof(CCmdChannel) == 16);
static_assert(sizeof(CMivoraCamera) == 16);
static_assert(sizeof(CMivoraGfxMode) == 16);
static_assert(sizeof(CMivoraGrabber) == 16);
static_assert(sizeof(CPyxenGrabber) == 16);

// ---- records ----

#define ASSERT_OFFSET(record, field, offset)                                                       \
    static_assert(offsetof(record, field) == (offset), #record "::" #field)

static_assert(sizeof(MV_MODULE_INTERFACE) == 40);
ASSERT_OFFSET(MV_MODULE_INTERFACE, size, 0);
ASSERT_OFFSET(MV_MODULE_INTERFACE, interfaceVersion, 4);
ASSERT_OFFSET(MV_MODULE_INTERFACE, compilerFamily, 8);
ASSERT_OFFSET(MV_MODULE_INTERFACE, servicesVersion, 16);
ASSERT_OFFSET(MV_MODULE_INTERFACE, services, 24);
ASSERT_OFFSET(MV_MODULE_INTERFACE, version, 32);
static_assert(kMvModuleInterfaceSmallest == offsetof(MV_MODULE_INTERFACE, servicesVersion));

static_assert(sizeof(MV_SERVICE_REASON) == 1024);
ASSERT_OFFSET(MV_SERVICE_REASON, size, 0);
ASSERT_OFFSET(MV_SERVICE_REASON, text, 4);

static_assert(sizeof(MV_FEATURE_VALUE) == 40);
ASSERT_OFFSET(MV_FEATURE_VALUE, size, 0);
ASSERT_OFFSET(MV_FEATURE_VALUE, type, 4);
ASSERT_OFFSET(MV_FEATURE_VALUE, integer, 8);
ASSERT_OFFSET(MV_FEATURE_VALUE, real, 16);
ASSERT_OFFSET(MV_FEATURE_VALUE, text, 24);
ASSERT_OFFSET(MV_FEATURE_VALUE, textBytes, 32);
ASSERT_OFFSET(MV_FEATURE_VALUE, reserved, 36);

static_assert(sizeof(MV_FEATURE_DESCRIPTION) == 192);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, size, 0);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, type, 4);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, visibility, 8);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, isSelector, 12);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, isStreamable, 16);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, isVolatile, 20);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, module, 24);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, name, 32);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, displayName, 40);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, category, 48);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, unit, 56);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, toolTip, 64);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, description, 72);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, nameSpace, 80);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, representation, 88);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, isReadable, 96);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, isWritable, 100);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, hasLimits, 104);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, hasIncrement, 108);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, integerMin, 112);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, integerMax, 120);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, increment, 128);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, realMin, 136);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, realMax, 144);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, longestText, 152);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, entryCount, 156);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, entries, 160);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, entryAvailable, 168);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, selected, 176);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, selectedCount, 184);
ASSERT_OFFSET(MV_FEATURE_DESCRIPTION, reserved, 188);

static_assert(sizeof(MV_FRAME_INFO) == 80);
ASSERT_OFFSET(MV_FRAME_INFO, size, 0);
ASSERT_OFFSET(MV_FRAME_INFO, valid, 4);
ASSERT_OFFSET(MV_FRAME_INFO, bufferIndex, 8);
ASSERT_OFFSET(MV_FRAME_INFO, received, 16);
ASSERT_OFFSET(MV_FRAME_INFO, frameId, 24);
ASSERT_OFFSET(MV_FRAME_INFO, timestamp, 32);
ASSERT_OFFSET(MV_FRAME_INFO, status, 40);
ASSERT_OFFSET(MV_FRAME_INFO, pixelFormat, 44);
ASSERT_OFFSET(MV_FRAME_INFO, width, 48);
ASSERT_OFFSET(MV_FRAME_INFO, height, 52);
ASSERT_OFFSET(MV_FRAME_INFO, offsetX, 56);
ASSERT_OFFSET(MV_FRAME_INFO, offsetY, 60);
ASSERT_OFFSET(MV_FRAME_INFO, payloadBytes, 64);
ASSERT_OFFSET(MV_FRAME_INFO, payloadType, 68);
ASSERT_OFFSET(MV_FRAME_INFO, picture, 72);
ASSERT_OFFSET(MV_FRAME_INFO, reserved, 76);

static_assert(sizeof(MV_CAMERA_DESCRIPTION) == 96);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, size, 0);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, index, 4);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, id, 8);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, extendedId, 16);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, name, 24);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, vendor, 32);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, model, 40);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, serialNumber, 48);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, userName, 56);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, interfaceId, 64);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, interfaceName, 72);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, transportLayer, 80);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, canOpen, 88);
ASSERT_OFFSET(MV_CAMERA_DESCRIPTION, canRead, 92);

static_assert(sizeof(MV_SETTING) == 56);
ASSERT_OFFSET(MV_SETTING, size, 0);
ASSERT_OFFSET(MV_SETTING, result, 4);
ASSERT_OFFSET(MV_SETTING, module, 8);
ASSERT_OFFSET(MV_SETTING, feature, 16);
ASSERT_OFFSET(MV_SETTING, selector, 24);
ASSERT_OFFSET(MV_SETTING, value, 32);
ASSERT_OFFSET(MV_SETTING, present, 40);
ASSERT_OFFSET(MV_SETTING, reason, 48);

static_assert(sizeof(PxnVersionInfo) == 12);
ASSERT_OFFSET(PxnVersionInfo, major, 0);
ASSERT_OFFSET(PxnVersionInfo, minor, 4);
ASSERT_OFFSET(PxnVersionInfo, patch, 8);

static_assert(sizeof(PxnCameraInfo) == 80);
ASSERT_OFFSET(PxnCameraInfo, cameraIdString, 0);
ASSERT_OFFSET(PxnCameraInfo, cameraIdExtended, 8);
ASSERT_OFFSET(PxnCameraInfo, cameraName, 16);
ASSERT_OFFSET(PxnCameraInfo, modelName, 24);
ASSERT_OFFSET(PxnCameraInfo, serialString, 32);
ASSERT_OFFSET(PxnCameraInfo, transportLayerHandle, 40);
ASSERT_OFFSET(PxnCameraInfo, interfaceHandle, 48);
ASSERT_OFFSET(PxnCameraInfo, localDeviceHandle, 56);
ASSERT_OFFSET(PxnCameraInfo, streamHandles, 64);
ASSERT_OFFSET(PxnCameraInfo, streamCount, 72);
ASSERT_OFFSET(PxnCameraInfo, permittedAccess, 76);

static_assert(sizeof(PxnInterfaceInfo) == 40);
ASSERT_OFFSET(PxnInterfaceInfo, interfaceIdString, 0);
ASSERT_OFFSET(PxnInterfaceInfo, interfaceType, 8);
ASSERT_OFFSET(PxnInterfaceInfo, interfaceName, 16);
ASSERT_OFFSET(PxnInterfaceInfo, interfaceHandle, 24);
ASSERT_OFFSET(PxnInterfaceInfo, transportLayerHandle, 32);

static_assert(sizeof(PxnTransportLayerInfo) == 64);
ASSERT_OFFSET(PxnTransportLayerInfo, transportLayerIdString, 0);
ASSERT_OFFSET(PxnTransportLayerInfo, transportLayerName, 8);
ASSERT_OFFSET(PxnTransportLayerInfo, transportLayerModelName, 16);
ASSERT_OFFSET(PxnTransportLayerInfo, transportLayerVendor, 24);
ASSERT_OFFSET(PxnTransportLayerInfo, transportLayerVersion, 32);
ASSERT_OFFSET(PxnTransportLayerInfo, transportLayerPath, 40);
ASSERT_OFFSET(PxnTransportLayerInfo, transportLayerHandle, 48);
ASSERT_OFFSET(PxnTransportLayerInfo, transportLayerType, 56);

static_assert(sizeof(PxnFeatureInfo) == 88);
ASSERT_OFFSET(PxnFeatureInfo, name, 0);
ASSERT_OFFSET(PxnFeatureInfo, category, 8);
ASSERT_OFFSET(PxnFeatureInfo, displayName, 16);
ASSERT_OFFSET(PxnFeatureInfo, tooltip, 24);
ASSERT_OFFSET(PxnFeatureInfo, description, 32);
ASSERT_OFFSET(PxnFeatureInfo, sfncNamespace, 40);
ASSERT_OFFSET(PxnFeatureInfo, unit, 48);
ASSERT_OFFSET(PxnFeatureInfo, representation, 56);
ASSERT_OFFSET(PxnFeatureInfo, featureDataType, 64);
ASSERT_OFFSET(PxnFeatureInfo, featureFlags, 68);
ASSERT_OFFSET(PxnFeatureInfo, pollingTime, 72);
ASSERT_OFFSET(PxnFeatureInfo, visibility, 76);
ASSERT_OFFSET(PxnFeatureInfo, isStreamable, 80);
ASSERT_OFFSET(PxnFeatureInfo, hasSelectedFeatures, 81);

static_assert(sizeof(PxnFeatureEnumEntry) == 48);
ASSERT_OFFSET(PxnFeatureEnumEntry, name, 0);
ASSERT_OFFSET(PxnFeatureEnumEntry, displayName, 8);
ASSERT_OFFSET(PxnFeatureEnumEntry, tooltip, 16);
ASSERT_OFFSET(PxnFeatureEnumEntry, description, 24);
ASSERT_OFFSET(PxnFeatureEnumEntry, intValue, 32);
ASSERT_OFFSET(PxnFeatureEnumEntry, visibility, 40);

static_assert(sizeof(PxnFrame) == 112);
ASSERT_OFFSET(PxnFrame, buffer, 0);
ASSERT_OFFSET(PxnFrame, bufferSize, 8);
ASSERT_OFFSET(PxnFrame, context, 16);
ASSERT_OFFSET(PxnFrame, receiveStatus, 48);
ASSERT_OFFSET(PxnFrame, receiveFlags, 52);
ASSERT_OFFSET(PxnFrame, frameId, 56);
ASSERT_OFFSET(PxnFrame, timestamp, 64);
ASSERT_OFFSET(PxnFrame, pixelFormat, 72);
ASSERT_OFFSET(PxnFrame, width, 76);
ASSERT_OFFSET(PxnFrame, height, 80);
ASSERT_OFFSET(PxnFrame, offsetX, 84);
ASSERT_OFFSET(PxnFrame, offsetY, 88);
ASSERT_OFFSET(PxnFrame, imageSize, 92);
ASSERT_OFFSET(PxnFrame, imageData, 96);
ASSERT_OFFSET(PxnFrame, payloadType, 104);
ASSERT_OFFSET(PxnFrame, chunkDataPresent, 108);

#undef ASSERT_OFFSET
