// types.h - plain types shared by hosts and grabber modules
//
// Fixed-width integers and pointers only, so that all compilers of one family agree on the layout.
#pragma once

#include <stdint.h>

/// Version of the interface: slots, signatures and records of the headers in this directory.
#define MIVORA_INTERFACE_VERSION 1u

/// A window handle of the platform (an HWND on Windows), or null.
typedef void* MV_WINDOW;

/// Result codes of grabber, camera and channel operations.
enum MV_ERRCODE : int32_t {
    MV_OK = 0,
    MV_ALREADY_INITIALISED = 1,
    MV_NOT_INITIALISED = 2,       ///< the grabber is not initialised
    MV_BUSY = 3,                  ///< an acquisition is running
    MV_REFUSED = 4,               ///< no SDK or it refused, too many buffers, or out of memory
    MV_NO_VIDEO_MODE = 7,         ///< the camera has no active video mode
    MV_NO_CAMERA = 8,             ///< no such camera, or none is active
    MV_CAMERA_NOT_OPEN = 10,      ///< no camera is open
    MV_BUFFERS_NOT_PREPARED = 12, ///< no frame buffers are prepared
    MV_BAD_VALUE = 14,            ///< a mode or value outside its limits, or a null pointer
    MV_CHANNEL_ALREADY_OPEN = 16, ///< the command channel is already open
    MV_NO_CHANNEL = 17,           ///< no such command channel, or none is active
    MV_CHANNEL_OPEN_FAILED = 18,
    MV_READ_FAILED = 19,
    MV_WRITE_FAILED = 20,
    MV_PURGE_FAILED = 21,
    MV_CONFIG_NOT_SAVED = 22,   ///< no configuration file, or writing it failed
    MV_CONFIG_NOT_LOADED = 23,  ///< no usable configuration file
    MV_NO_FILLED_BUFFER = 25,   ///< no filled frame buffer is waiting
    MV_ACQUISITION_FAILED = 29, ///< the SDK failed during the acquisition
    MV_NOT_AVAILABLE = 30,      ///< not available on this platform or in this module
    MV_NOT_SERVED = 34          ///< unsupported parameter, or the camera refused the write
};

/// Result of a modal dialog.
enum MV_DLG_EXITCODE : int32_t { MV_DLG_CANCEL = 0, MV_DLG_OK = 1 };

/// Ids of grabber parameters (GetGrabberParam, GetGrabberParamLimits, SetGrabberParam). Unless
/// noted otherwise a parameter has one value and the second one is 0.
enum MV_GRABBERFEATURE : uint32_t {
    MVGF_FRAME_BUFFER_COUNT = 1,         ///< requested number of frame buffers, from 1
    MVGF_ACQUISITION_CAPABILITIES = 128, ///< combination of kMvCap... bits, read-only
    MVGF_TIMER_MODE = 256,               ///< stored for the host
    MVGF_TIMER_VALUES = 257,             ///< exposure and frame interval, in units of the time base
    MVGF_TIMER_ENABLED = 258,            ///< 1 while the timer is enabled, else 0
    MVGF_TRIGGER_DELAY = 259,
    MVGF_TRIGGER_POLARITY = 260,
    MVGF_TIME_BASE = 261, ///< the unit as a power of ten, -6 (microseconds) to 0 (seconds)
    MVGF_GAIN = 262,
    MVGF_OFFSET = 263,
    MVGF_STROBE_VALUES = 265,
    MVGF_STROBE_POLARITY = 267,
    MVGF_FRAMES_RECEIVED = 4096 ///< complete frames since the last snap, in both values, read-only
};

/// Scan kinds of a graphics mode.
enum MV_INTERLACE : int32_t { MV_PROGRESSIVE = 0, MV_INTERLACED = 1 };

/// Colour codings of a graphics mode.
enum MV_COLORCODING : int32_t {
    MVCC_MONO = 0,
    MVCC_RAW_CFA = 1, ///< one colour sample per pixel (Bayer)
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
    MVCMD_MODULE = 0x80000000u ///< a channel type of the grabber module
};

/// Host features that can be switched on and off (SetFeature, GetFeature, GetFeatureStatus).
enum EMV_FEATURE_ID : uint32_t {
    EMV_FEATURE_POST_PROCESS = 0, ///< receivers are notified of filled buffers
    EMV_FEATURE_KEEP_NEWEST = 1,  ///< GetLastFilledBuffer returns the newest buffer, not the oldest
    EMV_FEATURE_CAM_CFG_CHANGE = 2,  ///< receivers are notified of configuration changes
    EMV_FEATURE_CAM_CNTRL_EVENT = 3, ///< receivers are notified of camera control events
    EMV_FEATURE_COUNT = 4
};

/// State of a host feature.
enum EMV_FEATURE_STATUS : uint32_t {
    EMV_STATUS_UNKNOWN = 0, ///< no such feature
    EMV_STATUS_OFF = 1,
    EMV_STATUS_ON = 2
};

/// Bits of MVGF_ACQUISITION_CAPABILITIES: the supported kinds of acquisition.
inline constexpr uint32_t kMvCapHostTimer = 1;  ///< single snaps paced by the host's timer
inline constexpr uint32_t kMvCapSingleSnap = 2; ///< single snaps
inline constexpr uint32_t kMvCapFieldSnap = 4;  ///< single fields of an interlaced image
inline constexpr uint32_t kMvCapContinuous = 8; ///< continuous acquisition, paced by the camera

/// Number of bits of SetGrabberBit and GetGrabberBit, free for use by the application.
inline constexpr uint32_t kMvGrabberBitCount = 32;

/// Event codes of SignalCamCntrlDlgEvent.
inline constexpr uint32_t kMvEventCloseRequest = 1;  ///< the dialog closes if the result is 1
inline constexpr uint32_t kMvEventTimingChanged = 3; ///< exposure or frame interval has changed
inline constexpr uint32_t kMvEventBufferImpactBegins = 0x1000; ///< the buffer layout will change
inline constexpr uint32_t kMvEventBufferImpactEnded = 0x1001;  ///< that change has ended

/// Bits of the mask of UpdateCamCntrlDialogs.
inline constexpr uint32_t kMvUpdateParameters = 1;    ///< parameters have changed
inline constexpr uint32_t kMvUpdateTimer = 2;         ///< the timer has changed
inline constexpr uint32_t kMvUpdateAll = 0xFFFFFFFFu; ///< everything may have changed

/// Flags of CMDPurge and CCmdChannel::Purge.
inline constexpr uint32_t kMvPurgeReceive = 1;  ///< bytes that have arrived
inline constexpr uint32_t kMvPurgeTransmit = 2; ///< bytes that are to be sent

/// Called for each filled buffer with its index. `fromCallback` is 1 on an SDK thread and 0 on the
/// thread that called Snap. It may call any grabber operation.
typedef void (*MV_POST_PROCESS_CALLBACK)(uint64_t bufferIndex, uint32_t fromCallback,
                                         void* context);
/// Called when cameras have been attached or removed, on an SDK thread. It may call any grabber
/// operation except DeInit.
typedef void (*MV_CAM_CFG_CHANGE_CALLBACK)(void* context);
/// Called for each camera control event; SignalCamCntrlDlgEvent returns its result.
typedef uint32_t (*MV_CAM_CNTRL_CALLBACK)(uint32_t code, void* context);
/// Called by UpdateCamCntrlDialogs, on the calling thread; `mask` combines kMvUpdate... bits.
typedef void (*MV_DIALOG_UPDATE_CALLBACK)(uint32_t mask, void* context);
