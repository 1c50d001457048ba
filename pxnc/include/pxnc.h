/* pxnc.h - the Korvane Pyxen camera SDK's C interface
 *
 * A camera maker's library implements the 55 entry points below; hosts load it
 * at run time and resolve every entry by name. Plain C, no include beyond the
 * fixed-width integers and wchar_t.
 *
 * General rules
 *  - Every entry but PxnShutdown answers a PxnError: 0 for success, a negative
 *    code (PxnErrorCode) otherwise.
 *  - Texts are narrow (UTF-8) and owned by the SDK. Every text in a list or a
 *    record, and every name given to a callback, lives until the last shutdown.
 *    Enumeration entry names are shared: one pointer per distinct name.
 *  - Startup and shutdown are counted.
 *  - List entries called with a null array and capacity 0 only count. A short
 *    array is filled as far as it goes, `found` says how many there are, and the
 *    result is PxnErrMoreData.
 *  - `size` arguments are the caller's sizeof of the record, checked by the SDK.
 *  - Entries may be called from any thread. Feature reads are allowed inside
 *    invalidation callbacks; what a callback may not do answers
 *    PxnErrInvalidCall.
 *  - A vanished camera ends every wait with an error: PxnErrBadHandle on its
 *    handles, PxnErrTimeout or PxnErrNotAvailable where something is waiting.
 */
#ifndef PXNC_H
#define PXNC_H

#include <stdint.h>
#include <wchar.h>

#if defined(_WIN32)
#define PXN_CALL __cdecl
#else
#define PXN_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef void* PxnHandle;
typedef int32_t PxnError;
typedef uint8_t PxnBool;

/* Handle of the system module; valid from startup to shutdown. */
#define PXN_SYSTEM_HANDLE ((PxnHandle)0x1000000000000001)

/* Access modes of PxnCameraOpen, and bits of PxnCameraInfo::permittedAccess. */
enum { PxnAccessModeFull = 1, PxnAccessModeRead = 2, PxnAccessModeUnknown = 4 };

/* PxnFeatureInfo::featureDataType. */
enum {
    PxnFeatureDataUnknown = 0,
    PxnFeatureDataInt = 1,
    PxnFeatureDataFloat = 2,
    PxnFeatureDataEnum = 3,
    PxnFeatureDataString = 4,
    PxnFeatureDataBool = 5,
    PxnFeatureDataCommand = 6,
    PxnFeatureDataRaw = 7,
    PxnFeatureDataNone = 8
};

/* PxnFeatureInfo::featureFlags. */
enum {
    PxnFeatureFlagRead = 1,
    PxnFeatureFlagWrite = 2,
    PxnFeatureFlagVolatile = 8,
    PxnFeatureFlagModifyWrite = 16
};

/* PxnFeatureInfo::visibility and PxnFeatureEnumEntry::visibility. */
enum {
    PxnVisibilityUnknown = 0,
    PxnVisibilityBeginner = 1,
    PxnVisibilityExpert = 2,
    PxnVisibilityGuru = 3,
    PxnVisibilityInvisible = 4
};

/* PxnFrame::receiveStatus. */
enum {
    PxnFrameStatusComplete = 0,
    PxnFrameStatusIncomplete = -1,
    PxnFrameStatusTooSmall = -2,
    PxnFrameStatusInvalid = -3
};

/* PxnFrame::receiveFlags: which members the SDK filled. */
enum {
    PxnFrameFlagDimension = 1,
    PxnFrameFlagOffset = 2,
    PxnFrameFlagFrameId = 4,
    PxnFrameFlagTimestamp = 8,
    PxnFrameFlagImageData = 16,
    PxnFrameFlagPayloadType = 32,
    PxnFrameFlagChunkData = 64
};

/* PxnFrame::payloadType. */
enum {
    PxnPayloadUnknown = 0,
    PxnPayloadImage = 1,
    PxnPayloadRaw = 2,
    PxnPayloadFile = 3,
    PxnPayloadChunkOnly = 4
};

/* PxnInterfaceInfo::interfaceType and PxnTransportLayerInfo::transportLayerType. */
enum {
    PxnTransportLayerUnknown = 0,
    PxnTransportLayerGEV = 1,
    PxnTransportLayerCL = 2,
    PxnTransportLayerIIDC = 3,
    PxnTransportLayerUVC = 4,
    PxnTransportLayerCXP = 5,
    PxnTransportLayerCLHS = 6,
    PxnTransportLayerU3V = 7,
    PxnTransportLayerEthernet = 8,
    PxnTransportLayerPCI = 9,
    PxnTransportLayerCustom = 10,
    PxnTransportLayerMixed = 11
};

/* Result codes. There is no code -38. */
typedef enum PxnErrorCode {
    PxnErrSuccess = 0,
    PxnErrInternalFault = -1,
    PxnErrApiNotStarted = -2,
    PxnErrNotFound = -3,
    PxnErrBadHandle = -4,
    PxnErrDeviceNotOpen = -5,
    PxnErrInvalidAccess = -6,
    PxnErrBadParameter = -7,
    PxnErrStructSize = -8,
    PxnErrMoreData = -9,
    PxnErrWrongType = -10,
    PxnErrInvalidValue = -11,
    PxnErrTimeout = -12,
    PxnErrOther = -13,
    PxnErrResources = -14,
    PxnErrInvalidCall = -15,
    PxnErrNoTL = -16,
    PxnErrNotImplemented = -17,
    PxnErrNotSupported = -18,
    PxnErrIncomplete = -19,
    PxnErrIO = -20,
    PxnErrValidValueSetNotPresent = -21,
    PxnErrGenTLUnspecified = -22,
    PxnErrUnspecified = -23,
    PxnErrBusy = -24,
    PxnErrNoData = -25,
    PxnErrParsingChunkData = -26,
    PxnErrInUse = -27,
    PxnErrUnknown = -28,
    PxnErrXml = -29,
    PxnErrNotAvailable = -30,
    PxnErrNotInitialized = -31,
    PxnErrInvalidAddress = -32,
    PxnErrAlready = -33,
    PxnErrNoChunkData = -34,
    PxnErrUserCallbackException = -35,
    PxnErrFeaturesUnavailable = -36,
    PxnErrTLNotFound = -37,
    PxnErrAmbiguous = -39,
    PxnErrRetriesExceeded = -40,
    PxnErrInsufficientBufferCount = -41
} PxnErrorCode;

typedef struct PxnVersionInfo {
    uint32_t major;
    uint32_t minor;
    uint32_t patch;
} PxnVersionInfo;

typedef struct PxnCameraInfo {
    const char* cameraIdString;
    const char* cameraIdExtended;
    const char* cameraName;
    const char* modelName;
    const char* serialString;
    PxnHandle transportLayerHandle;
    PxnHandle interfaceHandle;
    PxnHandle localDeviceHandle;    /* null unless the camera is open */
    PxnHandle const* streamHandles; /* null unless the camera is open */
    uint32_t streamCount;
    uint32_t permittedAccess; /* PxnAccessMode bits */
} PxnCameraInfo;

typedef struct PxnInterfaceInfo {
    const char* interfaceIdString;
    uint32_t interfaceType;
    const char* interfaceName;
    PxnHandle interfaceHandle;
    PxnHandle transportLayerHandle;
} PxnInterfaceInfo;

typedef struct PxnTransportLayerInfo {
    const char* transportLayerIdString;
    const char* transportLayerName;
    const char* transportLayerModelName;
    const char* transportLayerVendor;
    const char* transportLayerVersion;
    const char* transportLayerPath;
    PxnHandle transportLayerHandle;
    uint32_t transportLayerType;
} PxnTransportLayerInfo;

typedef struct PxnFeatureInfo {
    const char* name;
    const char* category; /* begins with '/' */
    const char* displayName;
    const char* tooltip;
    const char* description;
    const char* sfncNamespace;
    const char* unit;
    const char* representation;
    uint32_t featureDataType;
    uint32_t featureFlags;
    uint32_t pollingTime; /* ms */
    uint32_t visibility;
    PxnBool isStreamable;
    PxnBool hasSelectedFeatures;
} PxnFeatureInfo;

typedef struct PxnFeatureEnumEntry {
    const char* name;
    const char* displayName;
    const char* tooltip;
    const char* description;
    int64_t intValue;
    uint32_t visibility;
} PxnFeatureEnumEntry;

typedef struct PxnFrame {
    void* buffer;        /* in: memory to fill */
    uint32_t bufferSize; /* in: bytes */
    void* context[4];    /* in: the caller's, never touched by the SDK */
    int32_t receiveStatus;
    uint32_t receiveFlags;
    uint64_t frameId;
    uint64_t timestamp;   /* ns, the device's clock */
    uint32_t pixelFormat; /* PFNC code */
    uint32_t width;       /* pixels */
    uint32_t height;      /* lines */
    uint32_t offsetX;
    uint32_t offsetY;
    uint32_t imageSize; /* bytes */
    void* imageData;    /* inside buffer */
    uint32_t payloadType;
    uint32_t chunkDataPresent;
} PxnFrame;

/* Called on an SDK thread for every frame that completes, good or bad, and not
 * for flushed ones. */
typedef void(PXN_CALL* PxnFrameCallback)(PxnHandle camera, PxnHandle stream, PxnFrame* frame);

/* Called on an SDK thread when the named feature of the module has changed. */
typedef void(PXN_CALL* PxnInvalidationCallback)(PxnHandle handle, const char* name,
                                                void* userContext);

/* Called on the caller's thread of PxnChunkDataAccess, with a handle that reads
 * the chunk features of that frame until it returns. */
typedef PxnError(PXN_CALL* PxnChunkAccessCallback)(PxnHandle featureAccess, void* userContext);

#if defined(PXNC_BUILD)
#if defined(_WIN32)
#define PXN_API __declspec(dllexport)
#else
#define PXN_API __attribute__((visibility("default")))
#endif
#else
#define PXN_API
#endif

/* ---- library ---- */
PXN_API PxnError PXN_CALL PxnVersionQuery(PxnVersionInfo* info, uint32_t size);
/* configPath: null for the default configuration. */
PXN_API PxnError PXN_CALL PxnStartup(const wchar_t* configPath);
PXN_API void PXN_CALL PxnShutdown(void);

/* ---- cameras ---- */
PXN_API PxnError PXN_CALL PxnCamerasList(PxnCameraInfo* cameras, uint32_t capacity, uint32_t* found,
                                         uint32_t size);
PXN_API PxnError PXN_CALL PxnCameraInfoQueryByHandle(PxnHandle camera, PxnCameraInfo* info,
                                                     uint32_t size);
PXN_API PxnError PXN_CALL PxnCameraInfoQuery(const char* id, PxnCameraInfo* info, uint32_t size);
/* id: the plain or the extended identifier. */
PXN_API PxnError PXN_CALL PxnCameraOpen(const char* id, uint32_t accessMode, PxnHandle* camera);
/* Revokes and unregisters what is left; no callback fires afterwards. */
PXN_API PxnError PXN_CALL PxnCameraClose(PxnHandle camera);

/* ---- features of any module ---- */
PXN_API PxnError PXN_CALL PxnFeaturesList(PxnHandle handle, PxnFeatureInfo* features,
                                          uint32_t capacity, uint32_t* found, uint32_t size);
PXN_API PxnError PXN_CALL PxnFeatureInfoQuery(PxnHandle handle, const char* name,
                                              PxnFeatureInfo* info, uint32_t size);
PXN_API PxnError PXN_CALL PxnFeatureListSelected(PxnHandle handle, const char* name,
                                                 PxnFeatureInfo* features, uint32_t capacity,
                                                 uint32_t* found, uint32_t size);
PXN_API PxnError PXN_CALL PxnFeatureAccessQuery(PxnHandle handle, const char* name,
                                                PxnBool* readable, PxnBool* writeable);
PXN_API PxnError PXN_CALL PxnFeatureIntGet(PxnHandle handle, const char* name, int64_t* value);
PXN_API PxnError PXN_CALL PxnFeatureIntSet(PxnHandle handle, const char* name, int64_t value);
PXN_API PxnError PXN_CALL PxnFeatureIntRangeQuery(PxnHandle handle, const char* name, int64_t* min,
                                                  int64_t* max);
PXN_API PxnError PXN_CALL PxnFeatureIntIncrementQuery(PxnHandle handle, const char* name,
                                                      int64_t* increment);
PXN_API PxnError PXN_CALL PxnFeatureIntValidValueSetQuery(PxnHandle handle, const char* name,
                                                          int64_t* buffer, uint32_t capacity,
                                                          uint32_t* setSize);
PXN_API PxnError PXN_CALL PxnFeatureFloatGet(PxnHandle handle, const char* name, double* value);
PXN_API PxnError PXN_CALL PxnFeatureFloatSet(PxnHandle handle, const char* name, double value);
PXN_API PxnError PXN_CALL PxnFeatureFloatRangeQuery(PxnHandle handle, const char* name, double* min,
                                                    double* max);
PXN_API PxnError PXN_CALL PxnFeatureEnumGet(PxnHandle handle, const char* name, const char** value);
PXN_API PxnError PXN_CALL PxnFeatureEnumSet(PxnHandle handle, const char* name, const char* value);
PXN_API PxnError PXN_CALL PxnFeatureEnumRangeQuery(PxnHandle handle, const char* name,
                                                   const char** entries, uint32_t capacity,
                                                   uint32_t* found);
PXN_API PxnError PXN_CALL PxnFeatureEnumIsAvailable(PxnHandle handle, const char* name,
                                                    const char* entry, PxnBool* available);
PXN_API PxnError PXN_CALL PxnFeatureEnumAsInt(PxnHandle handle, const char* name, const char* entry,
                                              int64_t* value);
PXN_API PxnError PXN_CALL PxnFeatureEnumAsString(PxnHandle handle, const char* name, int64_t value,
                                                 const char** entry);
PXN_API PxnError PXN_CALL PxnFeatureEnumEntryGet(PxnHandle handle, const char* name,
                                                 const char* entry, PxnFeatureEnumEntry* info,
                                                 uint32_t size);
/* sizeFilled counts the terminator; a null buffer with size 0 asks for it. */
PXN_API PxnError PXN_CALL PxnFeatureStringGet(PxnHandle handle, const char* name, char* buffer,
                                              uint32_t bufferSize, uint32_t* sizeFilled);
PXN_API PxnError PXN_CALL PxnFeatureStringSet(PxnHandle handle, const char* name,
                                              const char* value);
/* maxLength does not count the terminator. */
PXN_API PxnError PXN_CALL PxnFeatureStringMaxlengthQuery(PxnHandle handle, const char* name,
                                                         uint32_t* maxLength);
PXN_API PxnError PXN_CALL PxnFeatureBoolGet(PxnHandle handle, const char* name, PxnBool* value);
PXN_API PxnError PXN_CALL PxnFeatureBoolSet(PxnHandle handle, const char* name, PxnBool value);
PXN_API PxnError PXN_CALL PxnFeatureCommandRun(PxnHandle handle, const char* name);
PXN_API PxnError PXN_CALL PxnFeatureCommandIsDone(PxnHandle handle, const char* name,
                                                  PxnBool* done);
PXN_API PxnError PXN_CALL PxnFeatureRawGet(PxnHandle handle, const char* name, char* buffer,
                                           uint32_t bufferSize, uint32_t* sizeFilled);
PXN_API PxnError PXN_CALL PxnFeatureRawSet(PxnHandle handle, const char* name, const char* buffer,
                                           uint32_t bufferSize);
PXN_API PxnError PXN_CALL PxnFeatureRawLengthQuery(PxnHandle handle, const char* name,
                                                   uint32_t* length);
/* Several registrations of one callback with different contexts are kept apart;
 * unregistering removes the newest and waits for a running callback, except
 * from inside it. */
PXN_API PxnError PXN_CALL PxnFeatureInvalidationRegister(PxnHandle handle, const char* name,
                                                         PxnInvalidationCallback callback,
                                                         void* userContext);
PXN_API PxnError PXN_CALL PxnFeatureInvalidationUnregister(PxnHandle handle, const char* name,
                                                           PxnInvalidationCallback callback);

/* ---- acquisition ---- */
PXN_API PxnError PXN_CALL PxnPayloadSizeGet(PxnHandle handle, uint32_t* payloadSize);
/* Announcing an announced frame updates it. */
PXN_API PxnError PXN_CALL PxnFrameAnnounce(PxnHandle handle, const PxnFrame* frame, uint32_t size);
PXN_API PxnError PXN_CALL PxnFrameRevoke(PxnHandle handle, const PxnFrame* frame);
PXN_API PxnError PXN_CALL PxnFrameRevokeAll(PxnHandle handle);
PXN_API PxnError PXN_CALL PxnCaptureStart(PxnHandle handle);
PXN_API PxnError PXN_CALL PxnCaptureEnd(PxnHandle handle);
/* callback: null when the caller waits with PxnCaptureFrameWait. */
PXN_API PxnError PXN_CALL PxnCaptureFrameQueue(PxnHandle handle, const PxnFrame* frame,
                                               PxnFrameCallback callback);
/* timeout: ms, 0xFFFFFFFF waits without limit. */
PXN_API PxnError PXN_CALL PxnCaptureFrameWait(PxnHandle handle, const PxnFrame* frame,
                                              uint32_t timeout);
PXN_API PxnError PXN_CALL PxnCaptureQueueFlush(PxnHandle handle);

/* ---- transport ---- */
PXN_API PxnError PXN_CALL PxnTransportLayersList(PxnTransportLayerInfo* layers, uint32_t capacity,
                                                 uint32_t* found, uint32_t size);
PXN_API PxnError PXN_CALL PxnInterfacesList(PxnInterfaceInfo* interfaces, uint32_t capacity,
                                            uint32_t* found, uint32_t size);
PXN_API PxnError PXN_CALL PxnMemoryRead(PxnHandle handle, uint64_t address, uint32_t size,
                                        char* buffer, uint32_t* sizeComplete);
PXN_API PxnError PXN_CALL PxnMemoryWrite(PxnHandle handle, uint64_t address, uint32_t size,
                                         const char* buffer, uint32_t* sizeComplete);

/* ---- settings and chunks ---- */
/* settings: reserved, null with size 0. */
PXN_API PxnError PXN_CALL PxnSettingsSave(PxnHandle handle, const wchar_t* path,
                                          const void* settings, uint32_t size);
PXN_API PxnError PXN_CALL PxnSettingsLoad(PxnHandle handle, const wchar_t* path,
                                          const void* settings, uint32_t size);
PXN_API PxnError PXN_CALL PxnChunkDataAccess(const PxnFrame* frame, PxnChunkAccessCallback callback,
                                             void* userContext);

#ifdef __cplusplus
} /* extern "C" */

#include <stddef.h>
static_assert(sizeof(void*) == 8, "x86-64 only");
static_assert(sizeof(PxnVersionInfo) == 12);
static_assert(sizeof(PxnCameraInfo) == 80);
static_assert(offsetof(PxnCameraInfo, cameraIdExtended) == 8);
static_assert(offsetof(PxnCameraInfo, serialString) == 32);
static_assert(offsetof(PxnCameraInfo, transportLayerHandle) == 40);
static_assert(offsetof(PxnCameraInfo, localDeviceHandle) == 56);
static_assert(offsetof(PxnCameraInfo, streamHandles) == 64);
static_assert(offsetof(PxnCameraInfo, streamCount) == 72);
static_assert(offsetof(PxnCameraInfo, permittedAccess) == 76);
static_assert(sizeof(PxnInterfaceInfo) == 40);
static_assert(offsetof(PxnInterfaceInfo, interfaceType) == 8);
static_assert(offsetof(PxnInterfaceInfo, interfaceName) == 16);
static_assert(offsetof(PxnInterfaceInfo, interfaceHandle) == 24);
static_assert(offsetof(PxnInterfaceInfo, transportLayerHandle) == 32);
static_assert(sizeof(PxnTransportLayerInfo) == 64);
static_assert(offsetof(PxnTransportLayerInfo, transportLayerPath) == 40);
static_assert(offsetof(PxnTransportLayerInfo, transportLayerHandle) == 48);
static_assert(offsetof(PxnTransportLayerInfo, transportLayerType) == 56);
static_assert(sizeof(PxnFeatureInfo) == 88);
static_assert(offsetof(PxnFeatureInfo, category) == 8);
static_assert(offsetof(PxnFeatureInfo, unit) == 48);
static_assert(offsetof(PxnFeatureInfo, representation) == 56);
static_assert(offsetof(PxnFeatureInfo, featureDataType) == 64);
static_assert(offsetof(PxnFeatureInfo, featureFlags) == 68);
static_assert(offsetof(PxnFeatureInfo, pollingTime) == 72);
static_assert(offsetof(PxnFeatureInfo, visibility) == 76);
static_assert(offsetof(PxnFeatureInfo, isStreamable) == 80);
static_assert(offsetof(PxnFeatureInfo, hasSelectedFeatures) == 81);
static_assert(sizeof(PxnFrame) == 112);
static_assert(offsetof(PxnFrame, bufferSize) == 8);
static_assert(offsetof(PxnFrame, context) == 16);
static_assert(offsetof(PxnFrame, receiveStatus) == 48);
static_assert(offsetof(PxnFrame, receiveFlags) == 52);
static_assert(offsetof(PxnFrame, frameId) == 56);
static_assert(offsetof(PxnFrame, timestamp) == 64);
static_assert(offsetof(PxnFrame, pixelFormat) == 72);
static_assert(offsetof(PxnFrame, width) == 76);
static_assert(offsetof(PxnFrame, height) == 80);
static_assert(offsetof(PxnFrame, offsetX) == 84);
static_assert(offsetof(PxnFrame, offsetY) == 88);
static_assert(offsetof(PxnFrame, imageSize) == 92);
static_assert(offsetof(PxnFrame, imageData) == 96);
static_assert(offsetof(PxnFrame, payloadType) == 104);
static_assert(offsetof(PxnFrame, chunkDataPresent) == 108);
static_assert(sizeof(PxnFeatureEnumEntry) == 48);
static_assert(offsetof(PxnFeatureEnumEntry, intValue) == 32);
static_assert(offsetof(PxnFeatureEnumEntry, visibility) == 40);
#endif

#endif /* PXNC_H */
