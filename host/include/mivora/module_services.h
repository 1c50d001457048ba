// module_services.h - what a module offers beside its grabbers: features, frames, cameras, settings
//
// Optional. A module names its services in its MV_MODULE_INTERFACE; CModuleLoader::GetServices
// finds those of a grabber. Plain types only: texts are UTF-8, records begin with their size, which
// whoever passes a record in sets to what it was compiled with; members behind that are not
// touched.
#pragma once

#include <stdint.h>

class CMivoraGrabber;

/// Version of the slots and records of this header. A host calls only slots of the version that
/// GetVersion returns, or of earlier ones.
#define MIVORA_SERVICES_VERSION 2u
/// The version that a module states in its MV_MODULE_INTERFACE: hosts of this version can use the
/// services, since later versions have only added slots behind its own.
#define MIVORA_SERVICES_BASE_VERSION 1u

/// How a service ended.
enum MV_SERVICE_RESULT : int32_t {
    MV_SERVICE_OK = 0,              ///< done
    MV_SERVICE_BAD_ARGUMENT = 1,    ///< a required pointer is null, or a size is wrong
    MV_SERVICE_NOT_INITIALISED = 2, ///< the grabber is not initialised
    MV_SERVICE_NO_CAMERA = 3,       ///< no camera is open, or it has gone
    /// Called inside a callback while another thread is inside a service or opens or closes the
    /// camera, or by the thread that opens or closes the camera right now. Nothing was done.
    MV_SERVICE_BUSY = 4,
    MV_SERVICE_NOT_FOUND = 5,    ///< no such module, feature, entry, camera, buffer or frame
    MV_SERVICE_WRONG_TYPE = 6,   ///< the value or operation does not suit the feature's type
    MV_SERVICE_NO_ACCESS = 7,    ///< not readable, or not writable, at present
    MV_SERVICE_OUT_OF_RANGE = 8, ///< outside the limits, no such entry, or too long
    MV_SERVICE_REFUSED = 9,      ///< a feature that depends on this one does not take the value
    MV_SERVICE_NOT_SYNCHRONISED = 10, ///< written, but a feature that depends on it did not follow
    MV_SERVICE_SDK_FAILED = 11,       ///< the camera's SDK failed; the reason names its code
    MV_SERVICE_TIMED_OUT = 12,        ///< the command has been started and is not done yet
    MV_SERVICE_GONE = 13,             ///< the frame's memory has been given back to the camera
    MV_SERVICE_FILE_FAILED = 14,      ///< the file cannot be read or written, or is not of its kind
    MV_SERVICE_INCOMPLETE = 15,       ///< done for some features only; the receiver got each result
    MV_SERVICE_NOT_SUPPORTED = 16,    ///< the camera or its SDK has nothing like that
    MV_SERVICE_OUT_OF_MEMORY = 17     ///< what was passed to a receiver before is right
};

/// Why a service did not end with MV_SERVICE_OK, for people; empty after success. Longer texts are
/// cut off at the end of a character.
struct MV_SERVICE_REASON {
    uint32_t size;   ///< of this record in bytes
    char text[1020]; ///< UTF-8, terminated
};

// ---- features ----

/// Types of features, as the GenICam standard names them.
enum MV_FEATURE_TYPE : uint32_t {
    MV_FEATURE_UNKNOWN = 0,
    MV_FEATURE_INTEGER = 1,
    MV_FEATURE_FLOAT = 2,
    MV_FEATURE_ENUMERATION = 3,
    MV_FEATURE_STRING = 4,
    MV_FEATURE_BOOLEAN = 5,
    MV_FEATURE_COMMAND = 6,
    MV_FEATURE_REGISTER = 7,
    MV_FEATURE_CATEGORY = 8
};

/// For whom a feature is meant.
enum MV_FEATURE_VISIBILITY : uint32_t {
    MV_VISIBILITY_UNKNOWN = 0,
    MV_VISIBILITY_BEGINNER = 1,
    MV_VISIBILITY_EXPERT = 2,
    MV_VISIBILITY_GURU = 3,
    MV_VISIBILITY_INVISIBLE = 4
};

/// The value of a feature. Only the member of the type counts.
struct MV_FEATURE_VALUE {
    uint32_t size;      ///< of this record in bytes
    uint32_t type;      ///< MV_FEATURE_TYPE
    int64_t integer;    ///< integers; booleans as 0 and 1; when read, an entry's number
    double real;        ///< floats
    const char* text;   ///< entries by name and strings, terminated; the bytes of a register
    uint32_t textBytes; ///< length of `text` in bytes, without the terminator
    uint32_t reserved;  ///< 0
};

/// What is known about a feature. Texts are never null and, like all pointers, valid until the
/// receiver returns.
struct MV_FEATURE_DESCRIPTION {
    uint32_t size;           ///< of this record in bytes
    uint32_t type;           ///< MV_FEATURE_TYPE
    uint32_t visibility;     ///< MV_FEATURE_VISIBILITY
    uint32_t isSelector;     ///< 1 when other features' values belong to its present value, else 0
    uint32_t isStreamable;   ///< 1 when settings files contain it
    uint32_t isVolatile;     ///< 1 when it may change at any time without notice
    const char* module;      ///< as ListModules passes it
    const char* name;        ///< unique in its module
    const char* displayName; ///< for people
    const char* category;    ///< a path such as "/ImageFormatControl"
    const char* unit;        ///< "us", "Hz"; empty for none
    const char* toolTip;     ///< one sentence
    const char* description; ///< more than that
    const char* nameSpace;   ///< "Standard" or "Custom"
    const char* representation; ///< "Linear", "HexNumber"; empty for none

    // From here on as it is at present; filled by DescribeFeature only.
    uint32_t isReadable;            ///< 1 or 0
    uint32_t isWritable;            ///< 1 or 0
    uint32_t hasLimits;             ///< the limits of the type below could be read
    uint32_t hasIncrement;          ///< integers
    int64_t integerMin;             ///< integers; included
    int64_t integerMax;             ///< integers; included
    int64_t increment;              ///< counted from the minimum
    double realMin;                 ///< floats; included
    double realMax;                 ///< floats; included
    uint32_t longestText;           ///< strings: bytes without the terminator
    uint32_t entryCount;            ///< of `entries` and `entryAvailable`
    const char* const* entries;     ///< names of all entries of an enumeration
    const uint32_t* entryAvailable; ///< 1 for each that can be selected at present
    const char* const* selected;    ///< names of the features that this one selects
    uint32_t selectedCount;         ///< of `selected`
    uint32_t reserved;              ///< 0
};

// ---- frames ----

/// Whether the picture in a buffer is still the one that the record describes.
enum MV_FRAME_PICTURE : uint32_t {
    MV_PICTURE_NONE = 0,    ///< nothing has been received into this buffer
    MV_PICTURE_CURRENT = 1, ///< the picture is that of this frame
    MV_PICTURE_GONE = 2     ///< the memory may hold parts of another frame already
};

/// Receive status of a frame.
enum MV_FRAME_STATUS : int32_t {
    MV_FRAME_COMPLETE = 0,
    MV_FRAME_INCOMPLETE = -1, ///< parts are missing
    MV_FRAME_TOO_SMALL = -2,  ///< the buffer is smaller than the payload
    MV_FRAME_INVALID = -3     ///< the data cannot be used
};

/// Bits of MV_FRAME_INFO::valid: which members the camera's SDK has filled.
inline constexpr uint32_t kMvFrameHasDimension = 1;    ///< pixelFormat, width, height
inline constexpr uint32_t kMvFrameHasOffset = 2;       ///< offsetX, offsetY
inline constexpr uint32_t kMvFrameHasFrameId = 4;      ///< frameId
inline constexpr uint32_t kMvFrameHasTimestamp = 8;    ///< timestamp
inline constexpr uint32_t kMvFrameHasImageSize = 16;   ///< payloadBytes
inline constexpr uint32_t kMvFrameHasPayloadType = 32; ///< payloadType
inline constexpr uint32_t kMvFrameHasChunks = 64;      ///< the frame carries chunk data

/// One frame as the module received it.
struct MV_FRAME_INFO {
    uint32_t size;        ///< of this record in bytes
    uint32_t valid;       ///< kMvFrameHas... bits
    uint64_t bufferIndex; ///< the host's buffer, from 0
    uint64_t received;    ///< frames received since the last snap, this one included, of any status
    uint64_t frameId;     ///< the camera's number
    uint64_t timestamp;   ///< the camera's clock, in nanoseconds
    int32_t status;       ///< MV_FRAME_STATUS
    uint32_t pixelFormat; ///< PFNC value of the data from the camera
    uint32_t width;       ///< pixels
    uint32_t height;      ///< lines
    uint32_t offsetX;     ///< pixels from the left edge of the sensor
    uint32_t offsetY;     ///< lines from its top
    uint32_t payloadBytes; ///< bytes of image data from the camera
    uint32_t payloadType;  ///< the SDK's number for it
    uint32_t picture;      ///< MV_FRAME_PICTURE
    uint32_t reserved;     ///< 0
};

// ---- cameras ----

/// A camera of the grabber's list. Texts are never null and valid until the receiver returns.
struct MV_CAMERA_DESCRIPTION {
    uint32_t size;            ///< of this record in bytes
    uint32_t index;           ///< position in the list, from 0
    const char* id;           ///< unique among the cameras of the SDK
    const char* extendedId;   ///< names interface and transport layer as well
    const char* name;         ///< what the host shows
    const char* vendor;       ///< empty while the camera is not open
    const char* model;        ///< the maker's name for cameras of this kind
    const char* serialNumber; ///< of this camera
    const char* userName; ///< what the user has named it; empty for none and while it is not open
    const char* interfaceId;    ///< what the camera is connected to
    const char* interfaceName;  ///< the same for people
    const char* transportLayer; ///< "GEV", "U3V", "CL" and so on
    uint32_t canOpen;           ///< 1 when it can be opened with full access at present, or when
                                ///< only an attempt can tell
    uint32_t canRead;           ///< 1 likewise for opening it for reading
};

// ---- settings ----

/// What became of one feature of a settings file.
struct MV_SETTING {
    uint32_t size;        ///< of this record in bytes
    int32_t result;       ///< MV_SERVICE_RESULT
    const char* module;   ///< as the file has it
    const char* feature;  ///< as the file has it
    const char* selector; ///< "GainSelector=Red" and so on, separated by commas; empty for none
    const char* value;    ///< as the file has it
    const char* present;  ///< as the camera had it before; empty when it could not be read
    const char* reason;   ///< empty when the result is MV_SERVICE_OK
};

/// Flag of LoadSettings: reads, checks and reports, and writes nothing.
inline constexpr uint32_t kMvSettingsDryRun = 1;

///@{
/// A receiver. None is called under a lock: it may call services and the grabber.
typedef void (*MV_TEXT_RECEIVER)(const char* text, void* context);
typedef void (*MV_DATA_RECEIVER)(const char* name, const void* data, uint64_t bytes, void* context);
typedef void (*MV_FEATURE_RECEIVER)(const MV_FEATURE_DESCRIPTION* feature, void* context);
typedef void (*MV_VALUE_RECEIVER)(const MV_FEATURE_VALUE* value, void* context);
typedef void (*MV_CHUNK_RECEIVER)(const char* name, const MV_FEATURE_VALUE* value, void* context);
typedef void (*MV_CHANGE_RECEIVER)(const char* module, const char* feature, void* context);
typedef void (*MV_FRAME_RECEIVER)(const MV_FRAME_INFO* frame, void* context);
typedef void (*MV_CAMERA_RECEIVER)(const MV_CAMERA_DESCRIPTION* camera, void* context);
typedef void (*MV_SETTING_RECEIVER)(const MV_SETTING* setting, void* context);
///@}

/// The services of one grabber, which live as long as the grabber.
///
/// Any thread may call any of them at any time while the grabber lives: they exclude one another
/// and opening, closing, listing and de-initialising by a lock of their own, which services hold
/// while they call neither a receiver nor the log sink. Where another thread may be waiting for the
/// caller they do not wait for that lock (MV_SERVICE_BUSY): inside a frame callback, inside the
/// receiver of a synchronous snap, of changes or of configuration changes. `reason` may be null
/// everywhere. No service throws.
class IMivoraModuleServices {
public:
    /// MIVORA_SERVICES_VERSION of the module: which slots there are.
    virtual uint32_t GetVersion() const = 0;

    // ---- features ----

    /// Passes the name of each module that has features: "System", and with an open camera those
    /// of the camera, its interface, transport layer, local device and streams.
    virtual MV_SERVICE_RESULT ListModules(MV_TEXT_RECEIVER receiver, void* context,
                                          MV_SERVICE_REASON* reason) = 0;
    /// Passes the fixed part of every feature's description, in the SDK's order.
    virtual MV_SERVICE_RESULT ListFeatures(const char* module, MV_FEATURE_RECEIVER receiver,
                                           void* context, MV_SERVICE_REASON* reason) = 0;
    /// Passes the whole description of a feature.
    virtual MV_SERVICE_RESULT DescribeFeature(const char* module, const char* feature,
                                              MV_FEATURE_RECEIVER receiver, void* context,
                                              MV_SERVICE_REASON* reason) = 0;
    /// Passes the present value. MV_SERVICE_WRONG_TYPE for commands and categories.
    virtual MV_SERVICE_RESULT ReadFeature(const char* module, const char* feature,
                                          MV_VALUE_RECEIVER receiver, void* context,
                                          MV_SERVICE_REASON* reason) = 0;
    /// Checks the feature and all that depend on it, writes, and synchronises those. `value` must
    /// be of the feature's type. `receiver` (may be null) gets the value that the feature has
    /// afterwards, also with MV_SERVICE_NOT_SYNCHRONISED; nothing when it cannot be read.
    virtual MV_SERVICE_RESULT WriteFeature(const char* module, const char* feature,
                                           const MV_FEATURE_VALUE* value,
                                           MV_VALUE_RECEIVER receiver, void* context,
                                           MV_SERVICE_REASON* reason) = 0;
    /// Starts a command and waits until it has been carried out, `timeoutMs` at most; 0 neither
    /// waits nor asks, 0xFFFFFFFF waits without a limit while the camera is open. The lock is not
    /// held while waiting. MV_SERVICE_TIMED_OUT also inside a callback for which another thread
    /// begins to wait.
    virtual MV_SERVICE_RESULT RunCommand(const char* module, const char* feature,
                                         uint32_t timeoutMs, MV_SERVICE_REASON* reason) = 0;
    /// Calls `receiver` on SDK threads when the feature has changed, until Unsubscribe or until the
    /// camera is closed; features of the system, until the grabber is de-initialised. Stores what
    /// Unsubscribe takes. The receiver may call services; closing waits for it, so inside it the
    /// grabber's Init, DeInit, OpenActCamera, CloseActCamera, RefreshCameraList and
    /// SelectCameraDialog return MV_BUSY, after their other refusals, and the grabber must not be
    /// deleted.
    virtual MV_SERVICE_RESULT Subscribe(const char* module, const char* feature,
                                        MV_CHANGE_RECEIVER receiver, void* context,
                                        uint64_t* subscription, MV_SERVICE_REASON* reason) = 0;
    /// The receiver is not called any more; waits for a call that runs on another thread, unless
    /// inside a receiver of changes. MV_SERVICE_NOT_FOUND when the subscription has ended already.
    /// Never MV_SERVICE_BUSY.
    virtual MV_SERVICE_RESULT Unsubscribe(uint64_t subscription, MV_SERVICE_REASON* reason) = 0;
    /// Passes the file that describes the camera's features, as the camera has it, and the file's
    /// name; cameras may have it compressed (".zip").
    virtual MV_SERVICE_RESULT ReadDescriptionFile(MV_DATA_RECEIVER receiver, void* context,
                                                  MV_SERVICE_REASON* reason) = 0;

    // ---- frames ----

    /// Stores what is known of the frame received last into a host buffer. Never waits.
    virtual MV_SERVICE_RESULT GetFrameInfo(uint64_t bufferIndex, MV_FRAME_INFO* info,
                                           MV_SERVICE_REASON* reason) = 0;
    /// Passes the chunk values of that frame: in the host's callback for it, or after a
    /// synchronous snap. MV_SERVICE_GONE when the camera has the buffer again,
    /// MV_SERVICE_NOT_SUPPORTED when the frame carries none.
    virtual MV_SERVICE_RESULT ReadChunks(uint64_t bufferIndex, MV_CHUNK_RECEIVER receiver,
                                         void* context, MV_SERVICE_REASON* reason) = 0;
    /// Calls `receiver` for each frame that the module receives, incomplete ones included, before
    /// the host's buffer callback, on the same thread; null removes it. Afterwards the former one
    /// is not called any more; waits for a call that runs on another thread.
    virtual MV_SERVICE_RESULT InstallFrameReceiver(MV_FRAME_RECEIVER receiver, void* context,
                                                   MV_SERVICE_REASON* reason) = 0;

    // ---- cameras ----

    /// Passes each camera of the grabber's list.
    virtual MV_SERVICE_RESULT ListCameras(MV_CAMERA_RECEIVER receiver, void* context,
                                          MV_SERVICE_REASON* reason) = 0;

    // ---- settings: `path` is encoded as the system's file functions take it ----

    /// Saves the streamable features of the open camera, with one value for each position of a
    /// selector, to a JSON file that is replaced only when it is whole. Passes each setting.
    virtual MV_SERVICE_RESULT SaveSettings(const char* path, MV_SETTING_RECEIVER receiver,
                                           void* context, MV_SERVICE_REASON* reason) = 0;
    /// Writes the settings of a file to the open camera, in an order in which each is taken where
    /// there is one, and passes each with its result. `flags` is 0 or kMvSettingsDryRun.
    /// MV_SERVICE_INCOMPLETE when some were not taken; the others stay written.
    virtual MV_SERVICE_RESULT LoadSettings(const char* path, uint32_t flags,
                                           MV_SETTING_RECEIVER receiver, void* context,
                                           MV_SERVICE_REASON* reason) = 0;

    // ---- since version 2 ----

    /// Passes the image of the frame received last into a host buffer as the camera has sent it,
    /// before any conversion, with the name of its pixel format: where ReadChunks would pass
    /// chunks, and after an asynchronous snap that has ended. MV_SERVICE_GONE when the camera has,
    /// or had, the buffer again, MV_SERVICE_NOT_SUPPORTED when the frame has brought no image.
    virtual MV_SERVICE_RESULT ReadSentImage(uint64_t bufferIndex, MV_DATA_RECEIVER receiver,
                                            void* context, MV_SERVICE_REASON* reason) = 0;

protected:
    ~IMivoraModuleServices() = default;
};

/// The services of one of the module's grabbers; null without any.
typedef IMivoraModuleServices* (*MV_SERVICES_QUERY)(CMivoraGrabber* grabber);
