// grabber_impl.h - what a grabber's base keeps
#pragma once

#include "filled_ring.h"
#include "mivora/grabber.h"
#include "receiver.h"
#include "section_names.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

/// The module's texts about itself.
struct DriverText {
    char text[256] = {};
};

struct CMivoraGrabber::Impl {
    Impl(void* instance, ILogSink* logSink) : moduleInstance(instance), sink(logSink) {}

    /// The file with the camera and mode sections, or null.
    CIniFile* CameraIni();
    SectionName GrabberSection() const { return SectionName::Grabber(sectionNumber); }
    bool IsFeatureOn(EMV_FEATURE_ID id) const { return (featureMask >> id & 1u) != 0; }
    /// Logs that a key could not be saved; answers MV_CONFIG_NOT_SAVED.
    MV_ERRCODE NotSaved(const char* what, const CIniFile* file) const;
    /// Gives the nodes of the camera list the section numbers, ids and modes kept for them.
    void ApplyCameraSections();
    void ApplyCameraSection(CMivoraCamera& camera, std::int32_t section);
    /// The section kept for a camera, -1 for none.
    std::int32_t FindCameraSection(const CMivoraCamera& camera);
    /// The channel at an index of the list; null when there is none.
    CCmdChannel* ChannelAt(std::int32_t index);
    /// Empties the list; answers its first node, which the caller then owns with all behind it.
    CCmdChannel* TakeChannels();

    void* const moduleInstance;
    ILogSink* const sink;

    // Set on the thread that configures the grabber, before others use it.
    CIniFile grabberIni;
    std::atomic<bool> hasGrabberIni{false};
    CIniFile cameraIni;
    std::atomic<bool> hasCameraIni{false};
    std::atomic<std::int32_t> sectionNumber{0};
    std::string configDirectory;

    DriverText driverDesc;
    DriverText driverName;
    DriverText driverVersion;

    std::atomic<bool> initialised{false};

    // The list itself changes only on the thread that initialises or refreshes the grabber.
    std::atomic<CMivoraCamera*> firstCamera{nullptr};
    std::atomic<std::int32_t> actCamera{-1};

    FilledRing ring;
    std::atomic<std::uint64_t> requestedBuffers{1};

    EventReceivers<MV_POST_PROCESS_CALLBACK> postProcess;
    EventReceivers<MV_CAM_CFG_CHANGE_CALLBACK> camCfgChange;
    EventReceivers<MV_CAM_CNTRL_CALLBACK> camCntrl;
    EventReceivers<MV_DIALOG_UPDATE_CALLBACK> dialogUpdate;
    Receiver<ICamCntrlDialog*> camCntrlDialog;
    std::atomic<ICamCntrlDialog*> camCntrlDialogObject{nullptr};

    platform::Mutex channelMutex; // the list's shape; no channel is called under it
    CCmdChannel* firstChannel GUARDED_BY(channelMutex) = nullptr;
    std::int32_t actChannel GUARDED_BY(channelMutex) = -1;

    platform::Mutex windowMutex;
    std::vector<MV_WINDOW> windows GUARDED_BY(windowMutex);

    std::atomic<std::uint32_t> featureMask{(1u << EMV_FEATURE_COUNT) - 1};
    std::atomic<std::uint32_t> grabberBits{0};

    std::atomic<std::uint32_t> exposure{0};
    std::atomic<std::uint32_t> interval{0};
    std::atomic<std::int32_t> timeBase{-6};
    std::atomic<std::uint32_t> savedExposure{0};
    std::atomic<std::uint32_t> savedInterval{0};
    std::atomic<std::int32_t> savedTimeBase{-6};
    std::atomic<std::uint32_t> timerMode{0};
    std::atomic<std::uint32_t> timerEnabled{0};
};
