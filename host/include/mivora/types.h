// types.h - the plain types that host and grabber modules share
//
// Only fixed-width integers and pointers, so that the layout is the same for every compiler of
// one family.
#pragma once

#include <stdint.h>

/// Version of the interface: slots, signatures and records of the headers in this directory.
#define MIVORA_INTERFACE_VERSION 1u

/// A window of the platform (an HWND on Windows), or null.
typedef void* MV_WINDOW;

/// Result codes of grabber, camera and channel operations.
enum MV_ERRCODE : int32_t {
    MV_OK = 0,
    MV_ALREADY_INITIALISED = 1,
    MV_NOT_INITIALISED = 2,       ///< not initialised, or no SDK
    MV_BUSY = 3,                  ///< an acquisition runs
    MV_REFUSED = 4,               ///< the SDK refused, too many buffers, or out of memory
    MV_NO_VIDEO_MODE = 7,         ///< the camera has no active video mode
    MV_NO_CAMERA = 8,             ///< no active camera
    MV_CAMERA_NOT_OPEN = 10,      ///< no camera is open
    MV_BUFFERS_NOT_PREPARED = 12, ///< frame buffers were not prepared
    MV_BAD_VALUE = 14,            ///< a mode or a value outside its limits
    MV_CHANNEL_ALREADY_OPEN = 16, ///< the command channel is open
    MV_NO_CHANNEL = 17,           ///< no active command channel
    MV_CHANNEL_OPEN_FAILED = 18,
    MV_READ_FAILED = 19,
    MV_WRITE_FAILED = 20,
    MV_PURGE_FAILED = 21,
    MV_CONFIG_NOT_SAVED = 22,
    MV_CONFIG_NOT_LOADED = 23, ///< no usable configuration file
    MV_NO_FILLED_BUFFER = 25,  ///< no filled frame buffer waits
    MV_ACQUISITION_FAILED = 29,
    MV_NOT_AVAILABLE = 30, ///< this platform has no such receiver or service
    MV_NOT_SERVED = 34     ///< the camera does not serve this parameter, or refused the write
};

/// How a modal dialog ended.
enum MV_DLG_EXITCODE : int32_t { MV_DLG_CANCEL = 0, MV_DLG_OK = 1 };

/// Ids of grabber parameters (GetGrabberParam, GetGrabberParamLimits, SetGrabberParam).
enum MV_GRABBERFEATURE : uint32_t {
    MVGF_FRAME_BUFFER_COUNT = 1,         ///< wanted number of frame buffers
    MVGF_ACQUISITION_CAPABILITIES = 128, ///< bit mask of kMvCap...
    MVGF_TIMER_MODE = 256,
    MVGF_TIMER_VALUES = 257, ///< exposure and frame interval, in units of the time base
    MVGF_TIMER_ENABLED = 258,
    MVGF_TRIGGER_DELAY = 259,
    MVGF_TRIGGER_POLARITY = 260,
    MVGF_TIME_BASE = 261, ///< exponent of the time unit, -6 (microseconds) to 0 (seconds)
    MVGF_GAIN = 262,
    MVGF_OFFSET = 263,
    MVGF_STROBE_VALUES = 265,
    MVGF_STROBE_POLARITY = 267,
    MVGF_FRAMES_RECEIVED = 4096 ///< complete frames since the last snap
};

/// Scan kinds of a graphics mode.
enum MV_INTERLACE : int32_t { MV_PROGRESSIVE = 0, MV_INTERLACED = 1 };

/// Colour codings of a graphics mode.
enum MV_COLORCODING : int32_t {
    MVCC_MONO = 0,
    MVCC_RAW_CFA = 1, ///< one colour filter per pixel (Bayer)
    MVCC_RGB = 3,
    MVCC_ARGB = 4,
    MVCC_RGBA = 7,
    MVCC_BGR = 8,
    MVCC_BGRA = 12
};

/// Kinds of command channels (CCmdChannel::GetChannelKind).
enum MV_CMD_CHANNEL : uint32_t {
    MVCMD_NONE = 0,
    MVCMD_SERIAL = 1,          ///< the host's own serial channel
    MVCMD_MODULE = 0x80000000u ///< a channel that the grabber module brings
};

/// Host features that can be switched (SetFeature, GetFeature, GetFeatureStatus).
enum EMV_FEATURE_ID : uint32_t {
    EMV_FEATURE_POST_PROCESS = 0,    ///< filled buffers are handed to the receivers
    EMV_FEATURE_KEEP_NEWEST = 1,     ///< a slow host loses the oldest filled buffer, not the newest
    EMV_FEATURE_CAM_CFG_CHANGE = 2,  ///< configuration changes are handed to the receivers
    EMV_FEATURE_CAM_CNTRL_EVENT = 3, ///< camera control events are handed to the receivers
    EMV_FEATURE_COUNT = 4
};

enum EMV_FEATURE_STATUS : uint32_t {
    EMV_STATUS_UNKNOWN = 0, ///< no such feature
    EMV_STATUS_OFF = 1,
    EMV_STATUS_ON = 2
};

/// Bits of parameter 128, the ways of acquisition that a grabber knows.
inline constexpr uint32_t kMvCapHostTimer = 1;  ///< the host's timer can pace single snaps
inline constexpr uint32_t kMvCapSingleSnap = 2; ///< single snaps
inline constexpr uint32_t kMvCapFieldSnap = 4;  ///< single fields of an interlaced image
inline constexpr uint32_t kMvCapContinuous = 8; ///< continuous acquisition, paced by the camera

/// Bits of SetGrabberBit/GetGrabberBit: 0 to 31, free for the application's use.
inline constexpr uint32_t kMvGrabberBitCount = 32;

/// Codes of SignalCamCntrlDlgEvent.
inline constexpr uint32_t kMvEventCloseRequest = 1; ///< the receiver answers 1 to allow
inline constexpr uint32_t kMvEventTimingChanged = 3;
inline constexpr uint32_t kMvEventBufferImpactBegins = 0x1000;
inline constexpr uint32_t kMvEventBufferImpactEnded = 0x1001;

/// Mask bits of UpdateCamCntrlDialogs.
inline constexpr uint32_t kMvUpdateParameters = 1;
inline constexpr uint32_t kMvUpdateTimer = 2;
inline constexpr uint32_t kMvUpdateAll = 0xFFFFFFFFu;

/// Flags of CMDPurge.
inline constexpr uint32_t kMvPurgeReceive = 1;
inline constexpr uint32_t kMvPurgeTransmit = 2;

/// Receives filled buffers: the buffer's index and whether the frame came on an SDK thread (1)
/// or on the thread that called Snap (0). It may call any grabber operation.
typedef void (*MV_POST_PROCESS_CALLBACK)(uint64_t bufferIndex, uint32_t fromCallback,
                                         void* context);
/// Told that cameras came or went. It may call any grabber operation.
typedef void (*MV_CAM_CFG_CHANGE_CALLBACK)(void* context);
/// Told of a camera control event; its answer is SignalCamCntrlDlgEvent's.
typedef uint32_t (*MV_CAM_CNTRL_CALLBACK)(uint32_t code, void* context);
/// Told of each UpdateCamCntrlDialogs with its mask (kMvUpdate...), on the thread that called it.
typedef void (*MV_DIALOG_UPDATE_CALLBACK)(uint32_t mask, void* context);
