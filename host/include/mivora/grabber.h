// grabber.h - the grabber interface: the host's base class of every grabber module
#pragma once

#include "mivora/cam_cntrl_dialog.h"
#include "mivora/camera.h"
#include "mivora/cmd_channel.h"
#include "mivora/export.h"
#include "mivora/ini_file.h"
#include "mivora/log_sink.h"
#include "mivora/types.h"

/// The base class of grabbers. A host talks to a module only through these virtual operations;
/// their order is the interface. What the base defines works; what is pure is the module's.
///
/// No operation throws; MV_REFUSED also says that memory ran out. Constructing one may throw
/// std::bad_alloc, as `new` itself.
///
/// Threads: operations are called from host threads. DoPostProcess, SignalCamCfgChange,
/// SignalCamCntrlDlgEvent and UpdateCamCntrlDialogs may be called from any thread and hand over
/// without holding a lock, so that a receiver may call back into the grabber. docs/threading.md
/// says which other operations any thread may call.
class MIVORA_API CMivoraGrabber {
public:
    CMivoraGrabber(const CMivoraGrabber&) = delete;
    CMivoraGrabber& operator=(const CMivoraGrabber&) = delete;

    // ---- configuration -------------------------------------------------------------------------
    // Sections and keys are listed in docs/configuration.md.

    /// Takes the grabber's ini file and the number (0 or more) of its section; the file's directory
    /// becomes the configuration directory. MV_CONFIG_NOT_LOADED when the file exists and cannot be
    /// read, MV_BAD_VALUE for a null or empty path or a negative number; what was set before then
    /// stays.
    /* slot   0 */ virtual MV_ERRCODE SetGrabberIni(const char* path, int32_t sectionNumber);
    /// Takes the file with the camera and mode sections; the grabber's own when never called. Codes
    /// as of SetGrabberIni.
    /* slot   1 */ virtual MV_ERRCODE SetCameraIni(const char* path);
    /// Reads what the host keeps for a grabber: timing, features, command channels, camera ids.
    /// What the file does not give keeps its value; MV_OK without a file, too.
    /* slot   2 */ virtual MV_ERRCODE LoadGrabberConfig();
    /// The default for a camera without a section, as for an absent key.
    /* slot   3 */ virtual int32_t GetCamSpecInt32(CMivoraCamera* camera, const char* key,
                                                   int32_t defaultValue);
    /// The texts are copied as by CIniFile::GetText; the result is the whole length.
    /* slot   4 */ virtual uint32_t GetCamSpecString(CMivoraCamera* camera, const char* key,
                                                     const char* defaultValue, char* buffer,
                                                     uint32_t capacity);
    /* slot   5 */ virtual int32_t GetModeSpecInt32(CMivoraCamera* camera, uint32_t modeIndex,
                                                    const char* key, int32_t defaultValue);
    /* slot   6 */ virtual int32_t GetGrabberInt32(const char* key, int32_t defaultValue);
    /* slot   7 */ virtual uint32_t GetGrabberString(const char* key, const char* defaultValue,
                                                     char* buffer, uint32_t capacity);
    /* slot   8 */ virtual int32_t GetActCamSpecInt32(const char* key, int32_t defaultValue);
    /* slot   9 */ virtual uint32_t GetActCamSpecString(const char* key, const char* defaultValue,
                                                        char* buffer, uint32_t capacity);
    /* slot  10 */ virtual int32_t GetActModeSpecInt32(const char* key, int32_t defaultValue);
    /* slot  11 */ virtual uint32_t GetActModeSpecString(const char* key, const char* defaultValue,
                                                         char* buffer, uint32_t capacity);
    /// MV_CONFIG_NOT_SAVED without an ini file or when the disk refuses.
    /* slot  12 */ virtual MV_ERRCODE SaveGrabberInt32(const char* key, int32_t value);
    /* slot  13 */ virtual MV_ERRCODE SaveGrabberHex32(const char* key, uint32_t value);
    /* slot  14 */ virtual MV_ERRCODE SaveGrabberString(const char* key, const char* value);
    /// Gives the active camera a section when it has none and saves its keys and modes.
    /// MV_NO_CAMERA without an active camera.
    /* slot  15 */ virtual MV_ERRCODE SaveCameraModeConfig();
    /// Saves what LoadGrabberConfig reads; cameras without a section get none.
    /* slot  16 */ virtual MV_ERRCODE SaveGrabberConfig();

    // ---- life, cameras -------------------------------------------------------------------------
    /// MV_ALREADY_INITIALISED the second time.
    /* slot  17 */ virtual MV_ERRCODE Init();
    /// Empties the camera list and forgets the frame buffers; MV_NOT_INITIALISED without Init.
    /* slot  18 */ virtual MV_ERRCODE DeInit();
    /* slot  19 */ virtual MV_ERRCODE OpenActCamera() = 0;
    /* slot  20 */ virtual uint32_t IsCameraOpen() = 0;
    /// MV_CAMERA_NOT_OPEN when IsCameraOpen answers 0. The module closes; the base only checks.
    /* slot  21 */ virtual MV_ERRCODE CloseActCamera();
    /* slot  22 */ virtual const char* GetDriverDesc();
    /* slot  23 */ virtual const char* GetDriverName();
    /* slot  24 */ virtual const char* GetDriverVersion();
    /* slot  25 */ virtual uint32_t GetNumCameras();
    /// -1 for none.
    /* slot  26 */ virtual int32_t GetActCameraIndex();
    /// -1 for an unknown id. 0 is no number, so that no camera is found by it.
    /* slot  27 */ virtual int32_t GetCameraIndexByQZRCameraID(uint32_t id);
    /* slot  28 */ virtual int32_t GetCameraIndexByCameraUniqueID(uint32_t id);
    /* slot  29 */ virtual CMivoraCamera* GetFirstCamera();
    /* slot  30 */ virtual CMivoraCamera* GetCamera(int32_t index);
    /* slot  31 */ virtual CMivoraCamera* GetActCamera();
    /* slot  32 */ virtual CMivoraCamera* GetLastCamera();
    /// Makes a camera active, -1 for none. An open camera is closed first when the index changes.
    /// MV_NO_CAMERA for an index without camera, MV_BUSY while an acquisition runs.
    /* slot  33 */ virtual MV_ERRCODE SetActCameraIndex(int32_t index);
    /* slot  34 */ virtual MV_ERRCODE SelectCameraDialog(MV_WINDOW parent,
                                                         MV_DLG_EXITCODE* exitCode) = 0;
    /// Confirms the active mode of the active camera: the host brings no dialog for modes, since
    /// cameras have one. MV_NO_CAMERA, MV_NO_VIDEO_MODE.
    /* slot  35 */ virtual MV_ERRCODE SelectModeDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode);

    // ---- buffers and their receivers -----------------------------------------------------------
    // docs/frame-life-cycle.md follows a frame through these.

    /// Remembers the wanted count and empties the ring of filled buffers, also of those that the
    /// host still holds. MV_REFUSED for more than 65536, with room for none.
    /* slot  36 */ virtual MV_ERRCODE PrepareFrameBuffers(uint64_t count);
    /// Takes a filled buffer out of the ring; it belongs to the caller until ReleaseFrameBuffer.
    /// While EMV_FEATURE_KEEP_NEWEST is on it is the newest, and the older ones are lost; else it
    /// is the oldest. MV_NO_FILLED_BUFFER when none waits.
    /* slot  37 */ virtual MV_ERRCODE GetLastFilledBuffer(uint64_t* index);
    /// The address of the host image of a buffer, null past the end.
    /* slot  38 */ virtual void* GetFrameBuffer(uint64_t index) = 0;
    /// Gives a buffer back, one that was taken or one that waits and is not wanted. MV_BAD_VALUE
    /// for any other.
    /* slot  39 */ virtual MV_ERRCODE ReleaseFrameBuffer(uint64_t index);
    /// Receivers: null or 0 removes one. Window and thread receivers get the message with the
    /// index (the code) in wParam and the from-callback mark in lParam; where the platform has no
    /// messages they answer MV_NOT_AVAILABLE. Removing a callback waits until it has returned on
    /// the other threads; inside a receiver it does not wait.
    /* slot  40 */ virtual MV_ERRCODE InstPostProcessMsgWnd(MV_WINDOW window, uint32_t message);
    /* slot  41 */ virtual MV_ERRCODE InstPostProcessThreadID(uint32_t threadId, uint32_t message);
    /* slot  42 */ virtual MV_ERRCODE InstPostProcessCallBack(MV_POST_PROCESS_CALLBACK callback,
                                                              void* context);
    /* slot  43 */ virtual MV_ERRCODE InstCamCfgChangeMsgWnd(MV_WINDOW window, uint32_t message);
    /* slot  44 */ virtual MV_ERRCODE InstCamCfgChangeThreadID(uint32_t threadId, uint32_t message);
    /* slot  45 */ virtual MV_ERRCODE InstCamCfgChangeCallBack(MV_CAM_CFG_CHANGE_CALLBACK callback,
                                                               void* context);
    /* slot  46 */ virtual MV_ERRCODE RefreshCameraList() = 0;

    // ---- parameters and acquisition ------------------------------------------------------------
    /// Out-pointers may be null; without success they get 0. The base serves parameters 1, 128,
    /// 256, 257, 258 and 261 and answers MV_NOT_SERVED to the others; 128 has no limits and cannot
    /// be set.
    /* slot  47 */ virtual MV_ERRCODE GetGrabberParamLimits(uint32_t id, uint64_t* min1,
                                                            uint64_t* max1, uint64_t* min2,
                                                            uint64_t* max2);
    /* slot  48 */ virtual MV_ERRCODE GetGrabberParam(uint32_t id, uint64_t* value1,
                                                      uint64_t* value2);
    /// MV_BAD_VALUE outside the limits. A new time base keeps the times: exposure and interval,
    /// also the saved ones, are converted to the new unit.
    /* slot  49 */ virtual MV_ERRCODE SetGrabberParam(uint32_t id, uint64_t value1,
                                                      uint64_t value2);
    /// 1 continuous, 2 asynchronous single, 3 to 5 synchronous single.
    /* slot  50 */ virtual MV_ERRCODE Snap(uint32_t mode) = 0;
    /* slot  51 */ virtual uint32_t GetAcquisitionState() = 0;
    /* slot  52 */ virtual MV_ERRCODE StopSnap() = 0;

    // ---- dialogs -------------------------------------------------------------------------------
    /// The base has no dialog: MV_NO_CAMERA, else MV_NOT_AVAILABLE and a line in the log.
    /* slot  53 */ virtual MV_ERRCODE CamCntrlDialog(MV_WINDOW parent);
    /// Hides the held dialog, if there is one.
    /* slot  54 */ virtual MV_ERRCODE CloseCamCntrlDialog();
    /* slot  55 */ virtual uint32_t IsCamCntrlDialogOpen();
    /* slot  56 */ virtual MV_ERRCODE InstCamCntrlMsgWnd(MV_WINDOW window, uint32_t message);
    /* slot  57 */ virtual MV_ERRCODE InstCamCntrlThreadID(uint32_t threadId, uint32_t message);
    /* slot  58 */ virtual MV_ERRCODE InstCamCntrlCallBack(MV_CAM_CNTRL_CALLBACK callback,
                                                           void* context);
    /* slot  59 */ virtual MV_ERRCODE GrabberConfigDialog(MV_WINDOW parent,
                                                          MV_DLG_EXITCODE* exitCode) = 0;

    // ---- command channels ----------------------------------------------------------------------
    /* slot  60 */ virtual uint32_t GetNumCmdChannels();
    /// -1 for none; MV_NO_CHANNEL for an index without channel.
    /* slot  61 */ virtual MV_ERRCODE SetActCmdChannelIndex(int32_t index);
    /* slot  62 */ virtual CCmdChannel* GetFirstCmdChannel();
    /* slot  63 */ virtual CCmdChannel* GetActCmdChannel();
    /* slot  64 */ virtual CCmdChannel* GetCmdChannel(int32_t index);
    /* slot  65 */ virtual int32_t GetActCmdChannelIndex();
    /// Runs the active channel's dialog and saves its configuration when it ends with OK.
    /// MV_NO_CHANNEL, MV_CONFIG_NOT_SAVED (the settings count all the same), or the dialog's code.
    /* slot  66 */ virtual MV_ERRCODE SelectCmdDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode);
    /// The CMD operations go to the active channel, whatever its state, and answer what it answers;
    /// MV_NO_CHANNEL without one.
    /* slot  67 */ virtual MV_ERRCODE CMDOpen();
    /* slot  68 */ virtual MV_ERRCODE CMDReadByte(uint8_t* buffer, uint64_t* count);
    /* slot  69 */ virtual MV_ERRCODE CMDWriteByte(const uint8_t* buffer, uint64_t* count);
    /* slot  70 */ virtual MV_ERRCODE CMDReadBuffer(uint8_t* buffer, uint64_t length,
                                                    uint64_t* count);
    /* slot  71 */ virtual MV_ERRCODE CMDWriteBuffer(const uint8_t* buffer, uint64_t length,
                                                     uint64_t* count);
    /* slot  72 */ virtual MV_ERRCODE CMDWriteCString(const char* text, uint64_t* count);
    /* slot  73 */ virtual MV_ERRCODE CMDPurge(uint32_t flags);
    /* slot  74 */ virtual MV_ERRCODE CMDClose();

    // ---- bits, features, timer -----------------------------------------------------------------
    /// MV_BAD_VALUE for a bit, a feature or a null pointer that is none.
    /* slot  75 */ virtual MV_ERRCODE SetGrabberBit(uint32_t bit, uint32_t value);
    /* slot  76 */ virtual MV_ERRCODE GetGrabberBit(uint32_t bit, uint32_t* value);
    /* slot  77 */ virtual EMV_FEATURE_STATUS GetFeatureStatus(EMV_FEATURE_ID id);
    /// Bit n: feature n is on.
    /* slot  78 */ virtual uint32_t GetFeatureMask();
    /* slot  79 */ virtual MV_ERRCODE SetFeature(EMV_FEATURE_ID id, uint32_t on);
    /* slot  80 */ virtual MV_ERRCODE GetFeature(EMV_FEATURE_ID id, uint32_t* on);
    /// Switch the timer (parameter 258) and tell the dialogs.
    /* slot  81 */ virtual MV_ERRCODE StartTimer();
    /* slot  82 */ virtual MV_ERRCODE StopTimer();
    /// Stores exposure, interval and the timer's state, then tells the dialogs.
    /* slot  83 */ virtual MV_ERRCODE ChangeTimerTB(uint32_t exposure, uint32_t interval,
                                                    uint32_t timerEnabled);
    /* slot  84 */ virtual void GetTimerMicroseconds(uint64_t* exposure, uint64_t* interval) = 0;
    /* slot  85 */ virtual void SetTimerMicroseconds(uint64_t exposure, uint64_t interval) = 0;

    // ---- channel makers, events ----------------------------------------------------------------
    /* slot  86 */ virtual uint32_t GetNumCmdChannelTypes() = 0;
    /// A new channel of the type, owned by the caller until it is handed to the list; null for an
    /// unknown type.
    /* slot  87 */ virtual CCmdChannel* CreateCmdChannel(uint32_t type) = 0;
    /* slot  88 */ virtual void DeleteCmdChannel(CCmdChannel* channel) = 0;
    /// Closes and deletes all channels of the list.
    /* slot  89 */ virtual void DeleteCmdChannelList();
    /* slot  90 */ virtual void SignalCamCfgChange();
    /// The callback's answer; 1 without one, since a posted message brings none, and while
    /// EMV_FEATURE_CAM_CNTRL_EVENT is off.
    /* slot  91 */ virtual uint32_t SignalCamCntrlDlgEvent(uint32_t code);
    /// Tells the held dialog, then the receiver of InstDialogUpdateCallBack.
    /* slot  92 */ virtual void UpdateCamCntrlDialogs(uint32_t mask);
    /// Windows whose dialog wants to see the host's messages first.
    /* slot  93 */ virtual void RegisterWindowHandle(MV_WINDOW window);
    /* slot  94 */ virtual void UnRegisterWindowHandle(MV_WINDOW window);
    /// Puts a filled buffer into the ring and tells the receivers. A buffer that waited already, or
    /// that the host holds, has lost an image; the receivers are told all the same. Allocates
    /// nothing.
    /* slot  95 */ virtual void DoPostProcess(uint64_t bufferIndex, uint32_t fromCallback);
    /* slot  96 */ virtual void SetAcquisitionState(uint32_t state) = 0;
    /// Carries the saved timing to the current one, and the other way round.
    /* slot  97 */ virtual MV_ERRCODE SetDefaultIodTimerConfigToGrabber();
    /* slot  98 */ virtual MV_ERRCODE GetDefaultIodTimerConfigFromGrabber();
    /* slot  99 */ virtual ~CMivoraGrabber();
    /// At most 255 bytes are kept.
    /* slot 100 */ virtual void SetDriverDesc(const char* text);
    /// Takes over a list of camera nodes and gives them what the ini file keeps under their unique
    /// ids: section number, number of the integrator, active mode.
    /* slot 101 */ virtual void SetFirstCamera(CMivoraCamera* camera);
    /* slot 102 */ virtual CMivoraCamera* CreateCamera() = 0;
    /// The highest section number in use of a kind of sections ("Camera_") of the camera ini file,
    /// -1 for none.
    /* slot 103 */ virtual int32_t GetBiggestSectionNum(const char* prefix);

    // ---- services that are no slots ------------------------------------------------------------
    /// The sink installed when the grabber was made, or null.
    ILogSink* GetLogSink() const;
    /// The grabber's ini file, or null before SetGrabberIni.
    CIniFile* GetIni() const;
    int32_t GetSectionNumber() const;
    /// Without trailing separator, but for a root; empty before SetGrabberIni or for a bare file
    /// name.
    const char* GetConfigDirectory() const;
    void* GetModuleInstance() const;
    /// Appends a channel to the list and makes it active; the grabber owns it from now on.
    /// MV_BAD_VALUE for null and for a channel that is in the list.
    MV_ERRCODE AddCmdChannel(CCmdChannel* channel);
    /// The ini section of the channel at an index of the list.
    void GetCmdChannelSection(int32_t index, char* buffer, uint32_t capacity) const;
    /// The windows given to RegisterWindowHandle, in order; null past the end.
    MV_WINDOW GetRegisteredWindow(uint32_t index) const;
    /// Told of every UpdateCamCntrlDialogs, beside the dialog that is held; null removes it.
    MV_ERRCODE InstDialogUpdateCallBack(MV_DIALOG_UPDATE_CALLBACK callback, void* context);
    uint64_t GetRequestedBufferCount() const;
    /// Images that a slow host lost since PrepareFrameBuffers: every image of DoPostProcess is
    /// handed out, still waits, was released unseen, or is counted here.
    uint64_t GetLostBufferCount() const;

protected:
    explicit CMivoraGrabber(void* moduleInstance);

    /// Deletes all camera nodes; no camera is active afterwards.
    MV_ERRCODE DeleteInternalList();
    /// Sets the active index without any check or closing.
    void StoreActCameraIndex(int32_t index);

    void SetDriverName(const char* text);
    void SetDriverVersion(const char* text);

    /// The camera control dialog held for camera control dialog index 2, or null. Not owned by the
    /// base: the module makes and destroys it. Once Set... has returned, the former dialog is told
    /// nothing any more.
    ICamCntrlDialog* GetCamCntrlDialogObject() const;
    void SetCamCntrlDialogObject(ICamCntrlDialog* dialog);

    // Timing: atomics inside, any thread.
    uint32_t GetExposureValue() const;
    void SetExposureValue(uint32_t value);
    uint32_t GetIntervalValue() const;
    void SetIntervalValue(uint32_t value);
    int32_t GetTimeBase() const;
    void SetTimeBase(int32_t exponent);
    uint32_t GetSavedExposure() const;
    void SetSavedExposure(uint32_t value);
    uint32_t GetSavedInterval() const;
    void SetSavedInterval(uint32_t value);
    int32_t GetSavedTimeBase() const;
    void SetSavedTimeBase(int32_t exponent);
    uint32_t GetTimerMode() const;    ///< served as parameter 256
    uint32_t GetTimerEnabled() const; ///< served as parameter 258

private:
    struct Impl;
    Impl* impl;
};

extern "C" {
/// Writes the name of a grabber's ini section ("Grabber_0") into `buffer`.
MIVORA_API void InitGrabberSectStr(char* buffer, uint32_t capacity, int32_t sectionNumber);
/// What a result code means, in plain words; never null.
MIVORA_API const char* MivoraErrorText(int32_t code);
}
