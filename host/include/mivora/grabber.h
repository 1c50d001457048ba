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
/// Threads: operations are called from host threads. DoPostProcess, SignalCamCfgChange,
/// SignalCamCntrlDlgEvent and UpdateCamCntrlDialogs may be called from any thread and hand over
/// without holding a lock, so that a receiver may call back into the grabber.
class MIVORA_API CMivoraGrabber {
public:
    CMivoraGrabber(const CMivoraGrabber&) = delete;
    CMivoraGrabber& operator=(const CMivoraGrabber&) = delete;

    // ---- configuration -------------------------------------------------------------------------
    /// Takes the grabber's ini file; its directory becomes the configuration directory.
    /// MV_CONFIG_NOT_LOADED when the file exists and cannot be read, MV_BAD_VALUE for null.
    /* slot   0 */ virtual MV_ERRCODE SetGrabberIni(const char* path, int32_t sectionNumber);
    /// Takes the file with the camera and mode sections; the grabber's own when never called.
    /* slot   1 */ virtual MV_ERRCODE SetCameraIni(const char* path);
    /// Reads what the host keeps for a grabber: timing, features, command channels, camera ids.
    /* slot   2 */ virtual MV_ERRCODE LoadGrabberConfig();
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
    /* slot  15 */ virtual MV_ERRCODE SaveCameraModeConfig();
    /* slot  16 */ virtual MV_ERRCODE SaveGrabberConfig();

    // ---- life, cameras -------------------------------------------------------------------------
    /* slot  17 */ virtual MV_ERRCODE Init();
    /* slot  18 */ virtual MV_ERRCODE DeInit();
    /* slot  19 */ virtual MV_ERRCODE OpenActCamera() = 0;
    /* slot  20 */ virtual uint32_t IsCameraOpen() = 0;
    /* slot  21 */ virtual MV_ERRCODE CloseActCamera();
    /* slot  22 */ virtual const char* GetDriverDesc();
    /* slot  23 */ virtual const char* GetDriverName();
    /* slot  24 */ virtual const char* GetDriverVersion();
    /* slot  25 */ virtual uint32_t GetNumCameras();
    /// -1 for none.
    /* slot  26 */ virtual int32_t GetActCameraIndex();
    /// -1 for an unknown id.
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
    /* slot  35 */ virtual MV_ERRCODE SelectModeDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode);

    // ---- buffers and their receivers -----------------------------------------------------------
    /* slot  36 */ virtual MV_ERRCODE PrepareFrameBuffers(uint64_t count);
    /// Takes the next filled buffer out of the ring; it belongs to the caller until
    /// ReleaseFrameBuffer. MV_NO_FILLED_BUFFER when none waits.
    /* slot  37 */ virtual MV_ERRCODE GetLastFilledBuffer(uint64_t* index);
    /// The address of the host image of a buffer, null past the end.
    /* slot  38 */ virtual void* GetFrameBuffer(uint64_t index) = 0;
    /* slot  39 */ virtual MV_ERRCODE ReleaseFrameBuffer(uint64_t index);
    /// Receivers: null or 0 removes one. Window and thread receivers get the message with the
    /// index (the code) in wParam; where the platform has no messages they answer MV_NOT_AVAILABLE.
    /* slot  40 */ virtual MV_ERRCODE InstPostProcessMsgWnd(MV_WINDOW window, uint32_t message);
    /* slot  41 */ virtual MV_ERRCODE InstPostProcessThreadID(uint32_t threadId, uint32_t message);
    /* slot  42 */ virtual MV_ERRCODE InstPostProcessCallBack(MV_POST_PROCESS_CALLBACK callback,
                                                              void* context);
    /* slot  43 */ virtual MV_ERRCODE InstCamCfgChangeMsgWnd(MV_WINDOW window, uint32_t message);
    /* slot  44 */ virtual MV_ERRCODE InstCamCfgChangeThreadID(uint32_t threadId,
                                                               uint32_t message);
    /* slot  45 */ virtual MV_ERRCODE InstCamCfgChangeCallBack(MV_CAM_CFG_CHANGE_CALLBACK callback,
                                                               void* context);
    /* slot  46 */ virtual MV_ERRCODE RefreshCameraList() = 0;

    // ---- parameters and acquisition ------------------------------------------------------------
    /// Out-pointers may be null.
    /* slot  47 */ virtual MV_ERRCODE GetGrabberParamLimits(uint32_t id, uint64_t* min1,
                                                            uint64_t* max1, uint64_t* min2,
                                                            uint64_t* max2);
    /* slot  48 */ virtual MV_ERRCODE GetGrabberParam(uint32_t id, uint64_t* value1,
                                                      uint64_t* value2);
    /* slot  49 */ virtual MV_ERRCODE SetGrabberParam(uint32_t id, uint64_t value1,
                                                      uint64_t value2);
    /// 1 continuous, 2 asynchronous single, 3 to 5 synchronous single.
    /* slot  50 */ virtual MV_ERRCODE Snap(uint32_t mode) = 0;
    /* slot  51 */ virtual uint32_t GetAcquisitionState() = 0;
    /* slot  52 */ virtual MV_ERRCODE StopSnap() = 0;

    // ---- dialogs -------------------------------------------------------------------------------
    /* slot  53 */ virtual MV_ERRCODE CamCntrlDialog(MV_WINDOW parent);
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
    /* slot  61 */ virtual MV_ERRCODE SetActCmdChannelIndex(int32_t index);
    /* slot  62 */ virtual CCmdChannel* GetFirstCmdChannel();
    /* slot  63 */ virtual CCmdChannel* GetActCmdChannel();
    /* slot  64 */ virtual CCmdChannel* GetCmdChannel(int32_t index);
    /* slot  65 */ virtual int32_t GetActCmdChannelIndex();
    /* slot  66 */ virtual MV_ERRCODE SelectCmdDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode);
    /// The CMD operations go to the active channel; MV_NO_CHANNEL without one.
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
    /* slot  75 */ virtual MV_ERRCODE SetGrabberBit(uint32_t bit, uint32_t value);
    /* slot  76 */ virtual MV_ERRCODE GetGrabberBit(uint32_t bit, uint32_t* value);
    /* slot  77 */ virtual EMV_FEATURE_STATUS GetFeatureStatus(EMV_FEATURE_ID id);
    /// Bit n: feature n is on.
    /* slot  78 */ virtual uint32_t GetFeatureMask();
    /* slot  79 */ virtual MV_ERRCODE SetFeature(EMV_FEATURE_ID id, uint32_t on);
    /* slot  80 */ virtual MV_ERRCODE GetFeature(EMV_FEATURE_ID id, uint32_t* on);
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
    /// The receivers' answer; 1 without a receiver.
    /* slot  91 */ virtual uint32_t SignalCamCntrlDlgEvent(uint32_t code);
    /* slot  92 */ virtual void UpdateCamCntrlDialogs(uint32_t mask);
    /// Windows whose dialog wants to see the host's messages first.
    /* slot  93 */ virtual void RegisterWindowHandle(MV_WINDOW window);
    /* slot  94 */ virtual void UnRegisterWindowHandle(MV_WINDOW window);
    /// Puts a filled buffer into the ring and tells the receivers. Allocates nothing.
    /* slot  95 */ virtual void DoPostProcess(uint64_t bufferIndex, uint32_t fromCallback);
    /* slot  96 */ virtual void SetAcquisitionState(uint32_t state) = 0;
    /// Carries the saved timing to the current one, and the other way round.
    /* slot  97 */ virtual MV_ERRCODE SetDefaultIodTimerConfigToGrabber();
    /* slot  98 */ virtual MV_ERRCODE GetDefaultIodTimerConfigFromGrabber();
    /* slot  99 */ virtual ~CMivoraGrabber();
    /// At most 255 bytes are kept.
    /* slot 100 */ virtual void SetDriverDesc(const char* text);
    /* slot 101 */ virtual void SetFirstCamera(CMivoraCamera* camera);
    /* slot 102 */ virtual CMivoraCamera* CreateCamera() = 0;
    /// The highest section number in use of a kind of sections ("Camera_"), -1 for none.
    /* slot 103 */ virtual int32_t GetBiggestSectionNum(const char* prefix);

    // ---- services that are no slots ------------------------------------------------------------
    /// The sink installed when the grabber was made, or null.
    ILogSink* GetLogSink() const;
    /// The grabber's ini file, or null before SetGrabberIni.
    CIniFile* GetIni() const;
    int32_t GetSectionNumber() const;
    /// Without trailing separator; empty before SetGrabberIni or for a bare file name.
    const char* GetConfigDirectory() const;
    void* GetModuleInstance() const;
    /// Appends a channel to the list and makes it active; the grabber owns it from now on.
    MV_ERRCODE AddCmdChannel(CCmdChannel* channel);
    /// The ini section of the channel at an index of the list.
    void GetCmdChannelSection(int32_t index, char* buffer, uint32_t capacity) const;
    /// The windows given to RegisterWindowHandle, in order; null past the end.
    MV_WINDOW GetRegisteredWindow(uint32_t index) const;
    /// Told of every UpdateCamCntrlDialogs, beside the dialog that is held; null removes it.
    MV_ERRCODE InstDialogUpdateCallBack(MV_DIALOG_UPDATE_CALLBACK callback, void* context);
    uint64_t GetRequestedBufferCount() const;
    /// Filled buffers that a slow host lost since PrepareFrameBuffers.
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
    /// base: the module makes and destroys it.
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
