/* pxnc_types.h - constants, records and callbacks of the camera SDK's interface
 *
 * Included by pxnc.h, which states the rules they follow. Records are laid out
 * by the x86-64 C ABI; the end of this file fixes their sizes and the offset of
 * every field.
 *
 * No text in a record is a null pointer; where there is nothing to say it is
 * empty. Texts are UTF-8, owned by the SDK and valid until the last shutdown.
 */
#ifndef PXNC_TYPES_H
#define PXNC_TYPES_H

#include <stdint.h>

/** Calling convention of all functions and callbacks: the platform's own. */
#if defined(_WIN32)
#define PXN_CALL __cdecl
#else
#define PXN_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Refers to a module. Null and handles that are no longer valid are refused. */
typedef void* PxnHandle;
/** 0 for success or a negative PxnErrorCode. */
typedef int32_t PxnError;
/** The SDK writes 0 and 1; any value but 0 that the host passes is true. */
typedef uint8_t PxnBool;

/** Handle of the system module; valid from the first startup to the last
 * shutdown. */
#define PXN_SYSTEM_HANDLE ((PxnHandle)0x1000000000000001)

/** Access modes of PxnCameraOpen (Full and Read), and bits of
 * PxnCameraInfo::permittedAccess. */
enum { PxnAccessModeFull = 1, PxnAccessModeRead = 2, PxnAccessModeUnknown = 4 };

/** PxnFeatureInfo::featureDataType. Features of type Unknown or None have no
 * value that this interface can read. */
enum {
    PxnFeatureDataUnknown = 0,
    PxnFeatureDataInt = 1,     /**< PxnFeatureInt functions */
    PxnFeatureDataFloat = 2,   /**< PxnFeatureFloat functions */
    PxnFeatureDataEnum = 3,    /**< PxnFeatureEnum functions */
    PxnFeatureDataString = 4,  /**< PxnFeatureString functions */
    PxnFeatureDataBool = 5,    /**< PxnFeatureBool functions */
    PxnFeatureDataCommand = 6, /**< PxnFeatureCommand functions */
    PxnFeatureDataRaw = 7,     /**< bytes: PxnFeatureRaw functions */
    PxnFeatureDataNone = 8     /**< categories and the like */
};

/** Bits of PxnFeatureInfo::featureFlags. */
enum {
    PxnFeatureFlagRead = 1,        /**< can be readable */
    PxnFeatureFlagWrite = 2,       /**< can be writable */
    PxnFeatureFlagVolatile = 8,    /**< may change at any time without notice */
    PxnFeatureFlagModifyWrite = 16 /**< the device may adjust a value that is written */
};

/** PxnFeatureInfo::visibility and PxnFeatureEnumEntry::visibility: for whom a
 * user interface should show it. */
enum {
    PxnVisibilityUnknown = 0,
    PxnVisibilityBeginner = 1,
    PxnVisibilityExpert = 2,
    PxnVisibilityGuru = 3,
    PxnVisibilityInvisible = 4
};

/** PxnFrame::receiveStatus. */
enum {
    PxnFrameStatusComplete = 0,    /**< all data has arrived */
    PxnFrameStatusIncomplete = -1, /**< parts are missing */
    PxnFrameStatusTooSmall = -2,   /**< the buffer is smaller than the payload */
    PxnFrameStatusInvalid = -3     /**< the data cannot be used */
};

/** Bits of PxnFrame::receiveFlags: which fields the SDK has filled. */
enum {
    PxnFrameFlagDimension = 1,    /**< pixelFormat, width and height */
    PxnFrameFlagOffset = 2,       /**< offsetX and offsetY */
    PxnFrameFlagFrameId = 4,      /**< frameId */
    PxnFrameFlagTimestamp = 8,    /**< timestamp */
    PxnFrameFlagImageData = 16,   /**< imageData and imageSize */
    PxnFrameFlagPayloadType = 32, /**< payloadType */
    PxnFrameFlagChunkData = 64    /**< chunkDataPresent */
};

/** PxnFrame::payloadType. */
enum {
    PxnPayloadUnknown = 0,
    PxnPayloadImage = 1,    /**< an image, with or without chunks */
    PxnPayloadRaw = 2,      /**< bytes of the camera's own kind */
    PxnPayloadFile = 3,     /**< a file */
    PxnPayloadChunkOnly = 4 /**< chunks without an image */
};

/** PxnInterfaceInfo::interfaceType and PxnTransportLayerInfo::transportLayerType. */
enum {
    PxnTransportLayerUnknown = 0,
    PxnTransportLayerGEV = 1,      /**< GigE Vision */
    PxnTransportLayerCL = 2,       /**< Camera Link */
    PxnTransportLayerIIDC = 3,     /**< IIDC on IEEE 1394 */
    PxnTransportLayerUVC = 4,      /**< USB video class */
    PxnTransportLayerCXP = 5,      /**< CoaXPress */
    PxnTransportLayerCLHS = 6,     /**< Camera Link HS */
    PxnTransportLayerU3V = 7,      /**< USB3 Vision */
    PxnTransportLayerEthernet = 8, /**< Ethernet, other than GigE Vision */
    PxnTransportLayerPCI = 9,      /**< a card in the computer */
    PxnTransportLayerCustom = 10,  /**< the maker's own */
    PxnTransportLayerMixed = 11    /**< several of these */
};

/** Result codes. There is no code -38. The comments say what this interface uses
 * a code for; the others report failures of a device, a transport layer or the
 * system that fit none of these. */
typedef enum PxnErrorCode {
    PxnErrSuccess = 0, /**< done */
    PxnErrInternalFault = -1,
    PxnErrApiNotStarted = -2, /**< no startup has succeeded, or all are undone */
    PxnErrNotFound = -3,      /**< no such camera, feature, entry, frame, file */
    PxnErrBadHandle = -4,     /**< not a handle, the wrong module, or its camera has vanished */
    PxnErrDeviceNotOpen = -5,
    PxnErrInvalidAccess = -6, /**< not readable or writable now, or opened for reading */
    PxnErrBadParameter = -7,  /**< an argument is missing or makes no sense */
    PxnErrStructSize = -8,    /**< `size` is not that of the record */
    PxnErrMoreData = -9,      /**< the array or buffer is too small and was filled */
    PxnErrWrongType = -10,    /**< the feature has another type */
    PxnErrInvalidValue = -11, /**< outside the limits, or no such entry */
    PxnErrTimeout = -12,
    PxnErrOther = -13,
    PxnErrResources = -14,   /**< out of memory or of another resource */
    PxnErrInvalidCall = -15, /**< not allowed inside this callback */
    PxnErrNoTL = -16,
    PxnErrNotImplemented = -17,
    PxnErrNotSupported = -18, /**< the module has nothing like that */
    PxnErrIncomplete = -19,   /**< only a part was transferred */
    PxnErrIO = -20,           /**< a file or a device could not be read or written */
    PxnErrValidValueSetNotPresent = -21,
    PxnErrGenTLUnspecified = -22,
    PxnErrUnspecified = -23,
    PxnErrBusy = -24,
    PxnErrNoData = -25, /**< the frame has not been received */
    PxnErrParsingChunkData = -26,
    PxnErrInUse = -27, /**< the frame is queued, or the camera is open */
    PxnErrUnknown = -28,
    PxnErrXml = -29,          /**< a file that is not well-formed or makes no sense */
    PxnErrNotAvailable = -30, /**< what is waited for cannot come */
    PxnErrNotInitialized = -31,
    PxnErrInvalidAddress = -32, /**< no register there */
    PxnErrAlready = -33,        /**< the frame is queued already */
    PxnErrNoChunkData = -34,
    PxnErrUserCallbackException = -35,
    PxnErrFeaturesUnavailable = -36,
    PxnErrTLNotFound = -37,
    PxnErrAmbiguous = -39,
    PxnErrRetriesExceeded = -40,
    PxnErrInsufficientBufferCount = -41
} PxnErrorCode;

/** Filled by the SDK: its own version. */
typedef struct PxnVersionInfo {
    uint32_t major; /**< changes with what hosts rely on */
    uint32_t minor; /**< changes with what is added */
    uint32_t patch; /**< changes with corrections */
} PxnVersionInfo;

/** Filled by the SDK: a camera that is present. */
typedef struct PxnCameraInfo {
    const char* cameraIdString; /**< identifier, unique among the cameras of the SDK */
    const char*
        cameraIdExtended;     /**< identifier with the connection in it; discovery events use it */
    const char* cameraName;   /**< for people */
    const char* modelName;    /**< the maker's name for cameras of this kind */
    const char* serialString; /**< serial number */
    PxnHandle transportLayerHandle; /**< kind of connection; valid until the last shutdown */
    PxnHandle interfaceHandle;      /**< what it is connected to; valid until the last shutdown */
    PxnHandle localDeviceHandle;    /**< null unless this process has the camera open */
    PxnHandle const* streamHandles; /**< streamCount handles, owned by the SDK and valid until the
                                       camera is closed; null unless the camera is open */
    uint32_t streamCount;           /**< 0 unless the camera is open */
    uint32_t permittedAccess;       /**< PxnAccessMode bits that an open may ask for now; Unknown
                                       when only an attempt can tell, 0 when there are none */
} PxnCameraInfo;

/** Filled by the SDK: something that cameras are connected to. */
typedef struct PxnInterfaceInfo {
    const char* interfaceIdString;  /**< identifier, unique among the interfaces of the SDK */
    uint32_t interfaceType;         /**< PxnTransportLayer value */
    const char* interfaceName;      /**< for people */
    PxnHandle interfaceHandle;      /**< valid until the last shutdown */
    PxnHandle transportLayerHandle; /**< the kind of connection it belongs to */
} PxnInterfaceInfo;

/** Filled by the SDK: a kind of connection. */
typedef struct PxnTransportLayerInfo {
    const char* transportLayerIdString;  /**< identifier, unique among the transport layers */
    const char* transportLayerName;      /**< for people */
    const char* transportLayerModelName; /**< the maker's name for it */
    const char* transportLayerVendor;    /**< its maker */
    const char* transportLayerVersion;   /**< its version as a text */
    const char* transportLayerPath;      /**< of its library; empty when it is built in */
    PxnHandle transportLayerHandle;      /**< valid until the last shutdown */
    uint32_t transportLayerType;         /**< PxnTransportLayer value */
} PxnTransportLayerInfo;

/** Filled by the SDK: what is fixed about a feature. */
typedef struct PxnFeatureInfo {
    const char* name;           /**< unique in its module; what the functions take */
    const char* category;       /**< path that begins with '/': "/ImageFormatControl" */
    const char* displayName;    /**< for people */
    const char* tooltip;        /**< one sentence for people */
    const char* description;    /**< more than the tooltip, for people */
    const char* sfncNamespace;  /**< "Standard" or "Custom" */
    const char* unit;           /**< "us", "Hz"; empty for none */
    const char* representation; /**< "Linear", "Logarithmic", "HexNumber"; empty for none */
    uint32_t featureDataType;   /**< PxnFeatureData value */
    uint32_t featureFlags;      /**< PxnFeatureFlag bits */
    uint32_t pollingTime; /**< ms after which a volatile value should be read again; 0: none */
    uint32_t visibility;  /**< PxnVisibility value */
    PxnBool isStreamable; /**< 1: belongs to the settings of the module */
    PxnBool hasSelectedFeatures; /**< 1: PxnFeatureListSelected lists the features it selects */
} PxnFeatureInfo;

/** Filled by the SDK: what is fixed about an entry of an enumeration. */
typedef struct PxnFeatureEnumEntry {
    const char* name;        /**< unique among the entries; what the functions take */
    const char* displayName; /**< for people */
    const char* tooltip;     /**< one sentence for people */
    const char* description; /**< more than the tooltip, for people */
    int64_t intValue;        /**< the number that PxnFeatureEnumAsInt stores */
    uint32_t visibility;     /**< PxnVisibility value */
} PxnFeatureEnumEntry;

/** Filled by the host as far as `context`, and by the SDK from there. Only fields
 * that receiveFlags names have a meaning. Host's memory: the record must stay in
 * its place while it is announced. */
typedef struct PxnFrame {
    void* buffer;              /**< memory for the payload; null only with bufferSize 0 */
    uint32_t bufferSize;       /**< bytes */
    void* context[4];          /**< the host's; neither read nor written by the SDK */
    int32_t receiveStatus;     /**< PxnFrameStatus value; always filled */
    uint32_t receiveFlags;     /**< PxnFrameFlag bits; always filled */
    uint64_t frameId;          /**< number of the frame in its acquisition */
    uint64_t timestamp;        /**< ns, the device's clock */
    uint32_t pixelFormat;      /**< code of the Pixel Format Naming Convention */
    uint32_t width;            /**< pixels */
    uint32_t height;           /**< lines */
    uint32_t offsetX;          /**< pixels from the left edge of the sensor */
    uint32_t offsetY;          /**< lines from its top */
    uint32_t imageSize;        /**< bytes of the image without chunks */
    void* imageData;           /**< where the image begins in `buffer` */
    uint32_t payloadType;      /**< PxnPayload value */
    uint32_t chunkDataPresent; /**< 1 when PxnChunkDataAccess can read chunks */
} PxnFrame;

/** A frame has been filled, with or without errors; it is the host's again and
 * may be queued inside the callback. Flushed frames are not reported. Called on
 * an SDK thread, for one frame of a camera at a time. No exception may leave it.
 * What it may not call is in pxnc.h. */
typedef void(PXN_CALL* PxnFrameCallback)(PxnHandle camera, PxnHandle stream, PxnFrame* frame);

/** The value, the limits, the access or the available entries of the feature may
 * have changed. `handle` and `userContext` are those of the registration, `name`
 * is a text of the SDK. Called on an SDK thread. It may call everything but
 * PxnStartup and PxnShutdown. No exception may leave it. */
typedef void(PXN_CALL* PxnInvalidationCallback)(PxnHandle handle, const char* name,
                                                void* userContext);

/** Called once by PxnChunkDataAccess on the caller's thread. `featureAccess`
 * reads the chunks of the frame as features until the callback returns. Its
 * result becomes that of PxnChunkDataAccess. It may call what a frame callback
 * may call. */
typedef PxnError(PXN_CALL* PxnChunkAccessCallback)(PxnHandle featureAccess, void* userContext);

#ifdef __cplusplus
} /* extern "C" */
#endif

/* ---- layout ---- */

#if defined(__cplusplus)
#define PXN_ASSERT(condition, text) static_assert(condition, text)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define PXN_ASSERT(condition, text) _Static_assert(condition, text)
#endif

#if defined(PXN_ASSERT)

#include <stddef.h>

#define PXN_SIZE(record, bytes)                                                                    \
    PXN_ASSERT(sizeof(record) == (bytes), #record " does not have " #bytes " bytes")
#define PXN_OFFSET(record, field, bytes)                                                           \
    PXN_ASSERT(offsetof(record, field) == (bytes), #record "." #field " is not at " #bytes)

PXN_SIZE(void*, 8);
PXN_SIZE(PxnHandle, 8);
PXN_SIZE(PxnError, 4);
PXN_SIZE(PxnBool, 1);

PXN_SIZE(PxnVersionInfo, 12);
PXN_OFFSET(PxnVersionInfo, major, 0);
PXN_OFFSET(PxnVersionInfo, minor, 4);
PXN_OFFSET(PxnVersionInfo, patch, 8);

PXN_SIZE(PxnCameraInfo, 80);
PXN_OFFSET(PxnCameraInfo, cameraIdString, 0);
PXN_OFFSET(PxnCameraInfo, cameraIdExtended, 8);
PXN_OFFSET(PxnCameraInfo, cameraName, 16);
PXN_OFFSET(PxnCameraInfo, modelName, 24);
PXN_OFFSET(PxnCameraInfo, serialString, 32);
PXN_OFFSET(PxnCameraInfo, transportLayerHandle, 40);
PXN_OFFSET(PxnCameraInfo, interfaceHandle, 48);
PXN_OFFSET(PxnCameraInfo, localDeviceHandle, 56);
PXN_OFFSET(PxnCameraInfo, streamHandles, 64);
PXN_OFFSET(PxnCameraInfo, streamCount, 72);
PXN_OFFSET(PxnCameraInfo, permittedAccess, 76);

PXN_SIZE(PxnInterfaceInfo, 40);
PXN_OFFSET(PxnInterfaceInfo, interfaceIdString, 0);
PXN_OFFSET(PxnInterfaceInfo, interfaceType, 8);
PXN_OFFSET(PxnInterfaceInfo, interfaceName, 16);
PXN_OFFSET(PxnInterfaceInfo, interfaceHandle, 24);
PXN_OFFSET(PxnInterfaceInfo, transportLayerHandle, 32);

PXN_SIZE(PxnTransportLayerInfo, 64);
PXN_OFFSET(PxnTransportLayerInfo, transportLayerIdString, 0);
PXN_OFFSET(PxnTransportLayerInfo, transportLayerName, 8);
PXN_OFFSET(PxnTransportLayerInfo, transportLayerModelName, 16);
PXN_OFFSET(PxnTransportLayerInfo, transportLayerVendor, 24);
PXN_OFFSET(PxnTransportLayerInfo, transportLayerVersion, 32);
PXN_OFFSET(PxnTransportLayerInfo, transportLayerPath, 40);
PXN_OFFSET(PxnTransportLayerInfo, transportLayerHandle, 48);
PXN_OFFSET(PxnTransportLayerInfo, transportLayerType, 56);

PXN_SIZE(PxnFeatureInfo, 88);
PXN_OFFSET(PxnFeatureInfo, name, 0);
PXN_OFFSET(PxnFeatureInfo, category, 8);
PXN_OFFSET(PxnFeatureInfo, displayName, 16);
PXN_OFFSET(PxnFeatureInfo, tooltip, 24);
PXN_OFFSET(PxnFeatureInfo, description, 32);
PXN_OFFSET(PxnFeatureInfo, sfncNamespace, 40);
PXN_OFFSET(PxnFeatureInfo, unit, 48);
PXN_OFFSET(PxnFeatureInfo, representation, 56);
PXN_OFFSET(PxnFeatureInfo, featureDataType, 64);
PXN_OFFSET(PxnFeatureInfo, featureFlags, 68);
PXN_OFFSET(PxnFeatureInfo, pollingTime, 72);
PXN_OFFSET(PxnFeatureInfo, visibility, 76);
PXN_OFFSET(PxnFeatureInfo, isStreamable, 80);
PXN_OFFSET(PxnFeatureInfo, hasSelectedFeatures, 81);

PXN_SIZE(PxnFeatureEnumEntry, 48);
PXN_OFFSET(PxnFeatureEnumEntry, name, 0);
PXN_OFFSET(PxnFeatureEnumEntry, displayName, 8);
PXN_OFFSET(PxnFeatureEnumEntry, tooltip, 16);
PXN_OFFSET(PxnFeatureEnumEntry, description, 24);
PXN_OFFSET(PxnFeatureEnumEntry, intValue, 32);
PXN_OFFSET(PxnFeatureEnumEntry, visibility, 40);

PXN_SIZE(PxnFrame, 112);
PXN_OFFSET(PxnFrame, buffer, 0);
PXN_OFFSET(PxnFrame, bufferSize, 8);
PXN_OFFSET(PxnFrame, context, 16);
PXN_OFFSET(PxnFrame, receiveStatus, 48);
PXN_OFFSET(PxnFrame, receiveFlags, 52);
PXN_OFFSET(PxnFrame, frameId, 56);
PXN_OFFSET(PxnFrame, timestamp, 64);
PXN_OFFSET(PxnFrame, pixelFormat, 72);
PXN_OFFSET(PxnFrame, width, 76);
PXN_OFFSET(PxnFrame, height, 80);
PXN_OFFSET(PxnFrame, offsetX, 84);
PXN_OFFSET(PxnFrame, offsetY, 88);
PXN_OFFSET(PxnFrame, imageSize, 92);
PXN_OFFSET(PxnFrame, imageData, 96);
PXN_OFFSET(PxnFrame, payloadType, 104);
PXN_OFFSET(PxnFrame, chunkDataPresent, 108);

#undef PXN_SIZE
#undef PXN_OFFSET
#undef PXN_ASSERT

#endif

#endif /* PXNC_TYPES_H */
