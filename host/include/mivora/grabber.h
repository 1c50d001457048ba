// grabber.h - the grabber interface: the host's base class of every grabber module
#pragma once

#include "mivora/cam_cntrl_dialog.h"
#include "mivora/camera.h"
#include "mivora/cmd_channel.h"
#include "mivora/export.h"
#include "mivora/ini_file.h"
#include "mivora/log_sink.h"
#include "mivora/types.h"

/// The base class of grabbers. A host uses a module only through these virtual operations, whose
/// order is the binary interface. The base implements all operations that are not pure virtual.
///
/// The constructor may throw std::bad_alloc; no operation throws. Operations that run out of memory
/// return MV_REFUSED unless stated otherwise.
///
/// Threads: operations are called from host threads, one at a time. DoPostProcess,
/// SignalCamCfgChange, SignalCamCntrlDlgEvent and UpdateCamCntrlDialogs may be called from any
/// thread; they hold no lock while they call a receiver, so that a receiver may call the grabber.
/// docs/threading.md lists the other operations that may be called from any thread.
class MIVORA_API CMivoraGrabber {
public:
    CMivoraGrabber(const CMivoraGrabber&) = delete;
    CMivoraGrabber& operator=(const CMivoraGrabber&) = delete;

    // ---- configuration -------------------------------------------------------------------------
    // Sections and keys are listed in docs/configuration.md.

    /// Sets the grabber's ini file and the number of its section, 0 or more; the directory of the
    /// file becomes the configuration directory. MV_CONFIG_NOT_LOADED if the file exists but cannot
    /// be read, MV_BAD_VALUE for a null or empty path or a negative number. On failure the previous
    /// settings are kept.
    /* slot   0 */ virtual MV_ERRCODE SetGrabberIni(const char* path, int32_t sectionNumber);
    /// Sets the ini file of the camera and mode sections, by default the grabber's own file. Errors
    /// as for SetGrabberIni.
    /* slot   1 */ virtual MV_ERRCODE SetCameraIni(const char* path);
    /// Loads the configuration kept for the grabber: timing, bits, features, command channels, and
    /// number and mode of the cameras. A value without a key is left unchanged; without an ini file
    /// all are. Returns MV_OK in these cases as well.
    /* slot   2 */ virtual MV_ERRCODE LoadGrabberConfig();
    ///@{
    /// Read one value of the camera, mode or grabber section; `Act` stands for the active camera
    /// and its active mode. They return the default for an absent key and for a camera or mode
    /// without a section. Numbers and texts as for CIniFile::GetInt32 and CIniFile::GetText.
    /* slot   3 */ virtual int32_t GetCamSpecInt32(CMivoraCamera* camera, const char* key,
                                                   int32_t defaultValue);
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
    ///@}
    ///@{
    /// Write one value to the grabber section. MV_CONFIG_NOT_SAVED if no ini file is set or writing
    /// fails, with a line in the log.
    /* slot  12 */ virtual MV_ERRCODE SaveGrabberInt32(const char* key, int32_t value);
    /* slot  13 */ virtual MV_ERRCODE SaveGrabberHex32(const char* key, uint32_t value);
    /* slot  14 */ virtual MV_ERRCODE SaveGrabberString(const char* key, const char* value);
    ///@}
    /// Saves the active camera and its modes, in a new section if it has none. MV_NO_CAMERA if no
    /// camera is active, MV_CONFIG_NOT_SAVED if no ini file is set or writing fails.
    /* slot  15 */ virtual MV_ERRCODE SaveCameraModeConfig();
    /// Saves what LoadGrabberConfig loads, with the saved timing. Saves only cameras that have a
    /// section. MV_CONFIG_NOT_SAVED if no ini file is set or writing fails.
    /* slot  16 */ virtual MV_ERRCODE SaveGrabberConfig();

    // ---- initialisation, cameras ---------------------------------------------------------------
    /// MV_ALREADY_INITIALISED if called again before DeInit.
    /* slot  17 */ virtual MV_ERRCODE Init();
    /// Clears the camera list and the ring of filled buffers. MV_NOT_INITIALISED without a
    /// preceding Init.
    /* slot  18 */ virtual MV_ERRCODE DeInit();
    /// Opens the active camera. MV_NO_CAMERA if no camera is active; the other errors are the
    /// module's.
    /* slot  19 */ virtual MV_ERRCODE OpenActCamera() = 0;
    /// 1 while a camera is open, else 0.
    /* slot  20 */ virtual uint32_t IsCameraOpen() = 0;
    /// MV_CAMERA_NOT_OPEN if no camera is open. The base only checks this; the module closes.
    /* slot  21 */ virtual MV_ERRCODE CloseActCamera();
    ///@{
    /// Description, name and version of the driver; never null.
    /* slot  22 */ virtual const char* GetDriverDesc();
    /* slot  23 */ virtual const char* GetDriverName();
    /* slot  24 */ virtual const char* GetDriverVersion();
    ///@}
    /// The number of cameras in the list.
    /* slot  25 */ virtual uint32_t GetNumCameras();
    /// -1 if no camera is active.
    /* slot  26 */ virtual int32_t GetActCameraIndex();
    ///@{
    /// -1 for an unknown id. A QZR camera id of 0 means "none" and is never found.
    /* slot  27 */ virtual int32_t GetCameraIndexByQZRCameraID(uint32_t id);
    /* slot  28 */ virtual int32_t GetCameraIndexByCameraUniqueID(uint32_t id);
    ///@}
    ///@{
    /// Camera nodes, owned by the grabber; null if there is no such camera.
    /* slot  29 */ virtual CMivoraCamera* GetFirstCamera();
    /* slot  30 */ virtual CMivoraCamera* GetCamera(int32_t index);
    /* slot  31 */ virtual CMivoraCamera* GetActCamera();
    /* slot  32 */ virtual CMivoraCamera* GetLastCamera();
    ///@}
    /// Makes a camera active, -1 for none. If the index changes, an open camera is closed first and
    /// stays active if closing fails. MV_NO_CAMERA for an index without a camera, MV_BUSY during an
    /// acquisition, or the error of CloseActCamera.
    /* slot  33 */ virtual MV_ERRCODE SetActCameraIndex(int32_t index);
    /// Lets the user choose the active camera in a modal dialog; user-interface thread. `exitCode`
    /// may be null.
    /* slot  34 */ virtual MV_ERRCODE SelectCameraDialog(MV_WINDOW parent,
                                                         MV_DLG_EXITCODE* exitCode) = 0;
    /// Confirms the active mode of the active camera without showing a dialog; `exitCode` becomes
    /// MV_DLG_OK. Errors: MV_NO_CAMERA, MV_NO_VIDEO_MODE.
    /* slot  35 */ virtual MV_ERRCODE SelectModeDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode);

    // ---- buffers and their receivers -----------------------------------------------------------
    // docs/frame-life-cycle.md follows a frame through these.

    /// Stores the requested count and resets the ring to `count` idle buffers, releasing those held
    /// by the host. MV_REFUSED for more than 65536 buffers or when out of memory; the ring then has
    /// no buffers, but the count is stored.
    /* slot  36 */ virtual MV_ERRCODE PrepareFrameBuffers(uint64_t count);
    /// Takes a filled buffer out of the ring; the host holds it until ReleaseFrameBuffer. While
    /// EMV_FEATURE_KEEP_NEWEST is on, this is the newest buffer and the older ones are lost,
    /// otherwise the oldest. MV_NO_FILLED_BUFFER if none is waiting, MV_BAD_VALUE for null.
    /* slot  37 */ virtual MV_ERRCODE GetLastFilledBuffer(uint64_t* index);
    /// The address of a buffer's image; null past the end.
    /* slot  38 */ virtual void* GetFrameBuffer(uint64_t index) = 0;
    /// Releases a buffer that the host holds, or one that is waiting. MV_BAD_VALUE for any other
    /// buffer.
    /* slot  39 */ virtual MV_ERRCODE ReleaseFrameBuffer(uint64_t index);
    ///@{
    /// Install the receivers of an event; a null window or callback, thread 0 or message 0 removes
    /// them. Each event has one window, one thread and one callback receiver, all of which are
    /// notified. Messages carry the buffer index or event code in wParam and, for filled buffers,
    /// `fromCallback` in lParam. MV_NOT_AVAILABLE on platforms without window messages.
    ///
    /// Replacing or removing a callback waits until it has returned on all other threads, except
    /// when called from inside a receiver. Any thread.
    /* slot  40 */ virtual MV_ERRCODE InstPostProcessMsgWnd(MV_WINDOW window, uint32_t message);
    /* slot  41 */ virtual MV_ERRCODE InstPostProcessThreadID(uint32_t threadId, uint32_t message);
    /* slot  42 */ virtual MV_ERRCODE InstPostProcessCallBack(MV_POST_PROCESS_CALLBACK callback,
                                                              void* context);
    /* slot  43 */ virtual MV_ERRCODE InstCamCfgChangeMsgWnd(MV_WINDOW window, uint32_t message);
    /* slot  44 */ virtual MV_ERRCODE InstCamCfgChangeThreadID(uint32_t threadId, uint32_t message);
    /* slot  45 */ virtual MV_ERRCODE InstCamCfgChangeCallBack(MV_CAM_CFG_CHANGE_CALLBACK callback,
                                                               void* context);
    ///@}
    /// Rebuilds the camera list; camera nodes obtained before are invalid afterwards.
    /* slot  46 */ virtual MV_ERRCODE RefreshCameraList() = 0;

    // ---- parameters and acquisition ------------------------------------------------------------
    /// Parameters, by MV_GRABBERFEATURE. Output pointers may be null; on failure they receive 0.
    /// The base supports 1, 128, 256, 257, 258 and 261 and returns MV_NOT_SERVED for all others;
    /// parameter 128 has no limits and cannot be set.
    /* slot  47 */ virtual MV_ERRCODE GetGrabberParamLimits(uint32_t id, uint64_t* min1,
                                                            uint64_t* max1, uint64_t* min2,
                                                            uint64_t* max2);
    /// The present value of a parameter; the rules of GetGrabberParamLimits apply.
    /* slot  48 */ virtual MV_ERRCODE GetGrabberParam(uint32_t id, uint64_t* value1,
                                                      uint64_t* value2);
    /// MV_BAD_VALUE outside the limits. Setting the time base converts exposure and interval,
    /// including the saved ones, to the new unit.
    /* slot  49 */ virtual MV_ERRCODE SetGrabberParam(uint32_t id, uint64_t value1,
                                                      uint64_t value2);
    /// Starts an acquisition: 1 continuous, 2 asynchronous single, 3 to 5 synchronous single.
    /* slot  50 */ virtual MV_ERRCODE Snap(uint32_t mode) = 0;
    /// The mode of the running acquisition; 0 while none is running.
    /* slot  51 */ virtual uint32_t GetAcquisitionState() = 0;
    /// Stops a continuous or asynchronous acquisition; MV_OK if none is running.
    /* slot  52 */ virtual MV_ERRCODE StopSnap() = 0;

    // ---- dialogs -------------------------------------------------------------------------------
    /// Shows the camera control dialog of the active camera. The base has none: MV_NO_CAMERA, else
    /// MV_NOT_AVAILABLE with a line in the log.
    /* slot  53 */ virtual MV_ERRCODE CamCntrlDialog(MV_WINDOW parent);
    /// Hides the dialog, if there is one.
    /* slot  54 */ virtual MV_ERRCODE CloseCamCntrlDialog();
    /// 1 while the dialog is visible, else 0.
    /* slot  55 */ virtual uint32_t IsCamCntrlDialogOpen();
    ///@{
    /// Receivers of camera control events, see InstPostProcessMsgWnd.
    /* slot  56 */ virtual MV_ERRCODE InstCamCntrlMsgWnd(MV_WINDOW window, uint32_t message);
    /* slot  57 */ virtual MV_ERRCODE InstCamCntrlThreadID(uint32_t threadId, uint32_t message);
    /* slot  58 */ virtual MV_ERRCODE InstCamCntrlCallBack(MV_CAM_CNTRL_CALLBACK callback,
                                                           void* context);
    ///@}
    /// Shows the modal configuration dialog of the module; user-interface thread.
    /* slot  59 */ virtual MV_ERRCODE GrabberConfigDialog(MV_WINDOW parent,
                                                          MV_DLG_EXITCODE* exitCode) = 0;

    // ---- command channels ----------------------------------------------------------------------
    /// The number of command channels.
    /* slot  60 */ virtual uint32_t GetNumCmdChannels();
    /// Makes a channel active, -1 for none. MV_NO_CHANNEL for an index without a channel.
    /* slot  61 */ virtual MV_ERRCODE SetActCmdChannelIndex(int32_t index);
    ///@{
    /// Channels, owned by the grabber; null if there is no such channel.
    /* slot  62 */ virtual CCmdChannel* GetFirstCmdChannel();
    /* slot  63 */ virtual CCmdChannel* GetActCmdChannel();
    /* slot  64 */ virtual CCmdChannel* GetCmdChannel(int32_t index);
    ///@}
    /// -1 if no channel is active.
    /* slot  65 */ virtual int32_t GetActCmdChannelIndex();
    /// Shows the dialog of the active channel and saves the settings if it ends with OK.
    /// MV_NO_CHANNEL, MV_CONFIG_NOT_SAVED (the new settings still apply), or the error of the
    /// dialog.
    /* slot  66 */ virtual MV_ERRCODE SelectCmdDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode);
    ///@{
    /// The CMD operations call the active channel, open or not, and return its result;
    /// MV_NO_CHANNEL and count 0 if no channel is active.
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
    ///@}

    // ---- bits, features, timer -----------------------------------------------------------------
    ///@{
    /// Application bits 0 to 31; a value other than 0 sets the bit. MV_BAD_VALUE for an unknown bit
    /// and for a null pointer.
    /* slot  75 */ virtual MV_ERRCODE SetGrabberBit(uint32_t bit, uint32_t value);
    /* slot  76 */ virtual MV_ERRCODE GetGrabberBit(uint32_t bit, uint32_t* value);
    ///@}
    /// Whether a host feature is on; EMV_STATUS_UNKNOWN for an unknown one.
    /* slot  77 */ virtual EMV_FEATURE_STATUS GetFeatureStatus(EMV_FEATURE_ID id);
    /// Bit n is set while feature n is on.
    /* slot  78 */ virtual uint32_t GetFeatureMask();
    ///@{
    /// Switch a host feature on or off, and store whether it is on. MV_BAD_VALUE for an unknown
    /// feature and for a null pointer.
    /* slot  79 */ virtual MV_ERRCODE SetFeature(EMV_FEATURE_ID id, uint32_t on);
    /* slot  80 */ virtual MV_ERRCODE GetFeature(EMV_FEATURE_ID id, uint32_t* on);
    ///@}
    ///@{
    /// Enable and disable the timer (parameter 258) and notify the dialogs.
    /* slot  81 */ virtual MV_ERRCODE StartTimer();
    /* slot  82 */ virtual MV_ERRCODE StopTimer();
    ///@}
    /// Stores exposure, interval and timer state, then notifies the dialogs. Times in units of the
    /// time base.
    /* slot  83 */ virtual MV_ERRCODE ChangeTimerTB(uint32_t exposure, uint32_t interval,
                                                    uint32_t timerEnabled);
    ///@{
    /// The current exposure and interval in microseconds.
    /* slot  84 */ virtual void GetTimerMicroseconds(uint64_t* exposure, uint64_t* interval) = 0;
    /* slot  85 */ virtual void SetTimerMicroseconds(uint64_t exposure, uint64_t interval) = 0;
    ///@}

    // ---- channel types, events -----------------------------------------------------------------
    /// The number of channel types that CreateCmdChannel accepts.
    /* slot  86 */ virtual uint32_t GetNumCmdChannelTypes() = 0;
    /// Creates a channel of a type (from 0). The caller owns it until AddCmdChannel. Null for an
    /// unknown type or when out of memory.
    /* slot  87 */ virtual CCmdChannel* CreateCmdChannel(uint32_t type) = 0;
    /// Deletes a channel created by CreateCmdChannel; null is ignored.
    /* slot  88 */ virtual void DeleteCmdChannel(CCmdChannel* channel) = 0;
    /// Closes and deletes all channels in the list.
    /* slot  89 */ virtual void DeleteCmdChannelList();
    /// Notifies the receivers that cameras have been attached or removed.
    /* slot  90 */ virtual void SignalCamCfgChange();
    /// Notifies the receivers of a camera control event (kMvEvent...) and returns the result of the
    /// callback. Returns 1 if there is no callback, as posted messages have no result, and while
    /// EMV_FEATURE_CAM_CNTRL_EVENT is off.
    /* slot  91 */ virtual uint32_t SignalCamCntrlDlgEvent(uint32_t code);
    /// Notifies the camera control dialog, then the callback of InstDialogUpdateCallBack. `mask`
    /// combines kMvUpdate... bits.
    /* slot  92 */ virtual void UpdateCamCntrlDialogs(uint32_t mask);
    ///@{
    /// Add and remove a modeless dialog that gets the host's messages first (dialog_messages.h).
    /// Null and repeated windows are ignored. Any thread.
    /* slot  93 */ virtual void RegisterWindowHandle(MV_WINDOW window);
    /* slot  94 */ virtual void UnRegisterWindowHandle(MV_WINDOW window);
    ///@}
    /// Adds a filled buffer to the ring and notifies the receivers. If the buffer is already
    /// waiting or held by the host, an image is lost; the receivers are still notified. An index
    /// without a buffer is logged and ignored. Allocates nothing.
    /* slot  95 */ virtual void DoPostProcess(uint64_t bufferIndex, uint32_t fromCallback);
    /// Sets the value of GetAcquisitionState without starting or stopping anything.
    /* slot  96 */ virtual void SetAcquisitionState(uint32_t state) = 0;
    ///@{
    /// Copy the saved timing (exposure, interval, time base) to the current one, and vice versa.
    /* slot  97 */ virtual MV_ERRCODE SetDefaultIodTimerConfigToGrabber();
    /* slot  98 */ virtual MV_ERRCODE GetDefaultIodTimerConfigFromGrabber();
    ///@}
    /* slot  99 */ virtual ~CMivoraGrabber();
    /// Keeps at most 255 bytes; null clears the text.
    /* slot 100 */ virtual void SetDriverDesc(const char* text);
    /// Takes ownership of a list of camera nodes and sets what the ini file holds for their unique
    /// ids: section number, QZR camera id and active mode. Does not delete the previous list.
    /* slot 101 */ virtual void SetFirstCamera(CMivoraCamera* camera);
    /// Creates a camera node of the module's class; the caller owns it.
    /* slot 102 */ virtual CMivoraCamera* CreateCamera() = 0;
    /// The highest number of the sections in the camera ini file whose names begin with `prefix`,
    /// for example "Camera_"; -1 if there are none.
    /* slot 103 */ virtual int32_t GetBiggestSectionNum(const char* prefix);

    // ---- non-virtual operations ----------------------------------------------------------------
    /// The sink that was installed when the grabber was created, or null if null was installed.
    ILogSink* GetLogSink() const;
    /// The grabber's ini file, or null before SetGrabberIni.
    CIniFile* GetIni() const;
    /// The section number passed to SetGrabberIni; 0 at first.
    int32_t GetSectionNumber() const;
    /// The configuration directory without a trailing separator, except for a root; empty before
    /// SetGrabberIni and for a file name without a directory.
    const char* GetConfigDirectory() const;
    /// The module handle passed to the constructor.
    void* GetModuleInstance() const;
    /// Appends a channel to the list and makes it active; the grabber then owns it. MV_BAD_VALUE
    /// for null and for a channel that is already in the list.
    MV_ERRCODE AddCmdChannel(CCmdChannel* channel);
    /// Writes the name of the ini section of a channel ("Channel_0_1") to `buffer`, truncated to
    /// `capacity` - 1 bytes and null-terminated.
    void GetCmdChannelSection(int32_t index, char* buffer, uint32_t capacity) const;
    /// The windows passed to RegisterWindowHandle, in order; null past the end. Any thread.
    MV_WINDOW GetRegisteredWindow(uint32_t index) const;
    /// Installs the callback of UpdateCamCntrlDialogs; null removes it. Waits as described for
    /// InstPostProcessMsgWnd.
    MV_ERRCODE InstDialogUpdateCallBack(MV_DIALOG_UPDATE_CALLBACK callback, void* context);
    /// The count last passed to PrepareFrameBuffers or set as parameter 1; 1 at first.
    uint64_t GetRequestedBufferCount() const;
    /// The number of images lost since PrepareFrameBuffers. Each image passed to DoPostProcess has
    /// been taken, is waiting, was released without being taken, or is counted here.
    uint64_t GetLostBufferCount() const;

protected:
    /// `moduleInstance` is what CreateGrabberInstance received.
    explicit CMivoraGrabber(void* moduleInstance);

    /// Deletes all camera nodes; no camera is active afterwards.
    MV_ERRCODE DeleteInternalList();
    /// Sets the active camera index without checking it or closing a camera.
    void StoreActCameraIndex(int32_t index);

    ///@{
    /// Keep at most 255 bytes; null clears the text.
    void SetDriverName(const char* text);
    void SetDriverVersion(const char* text);
    ///@}

    ///@{
    /// The dialog for camera control dialog index 2, or null. The module creates and deletes it.
    /// The setter waits as described for InstPostProcessMsgWnd; afterwards the previous dialog
    /// receives no more updates.
    ICamCntrlDialog* GetCamCntrlDialogObject() const;
    void SetCamCntrlDialogObject(ICamCntrlDialog* dialog);
    ///@}

    ///@{
    /// Timing in units of the time base, which is a power of ten of a second. Any thread.
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
    ///@}
    uint32_t GetTimerMode() const;    ///< parameter 256
    uint32_t GetTimerEnabled() const; ///< parameter 258: enabled unless 0

private:
    struct Impl;
    Impl* impl;
};

extern "C" {
/// Writes the name of a grabber's ini section ("Grabber_0") to `buffer`, truncated to
/// `capacity` - 1 bytes and null-terminated.
MIVORA_API void InitGrabberSectStr(char* buffer, uint32_t capacity, int32_t sectionNumber);
/// A description of a result code for people; never null.
MIVORA_API const char* MivoraErrorText(int32_t code);
}
