// grabber_impl.h - private members of CMivoraGrabber
#pragma once

#include "filled_ring.h"
#include "mivora/grabber.h"
#include "receiver.h"
#include "section_names.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

/// The smallest time base: 10^-6 seconds.
inline constexpr std::int32_t kMinTimeBase = -6;

/// A driver description, name or version.
struct DriverText {
    char text[256] = {};
};

struct CMivoraGrabber::Impl {
    Impl(void* instance, ILogSink* logSink) : moduleInstance(instance), sink(logSink) {}

    /// The file with the camera and mode sections; null if no ini file is set.
    CIniFile* CameraIni();
    SectionName GrabberSection() const { return SectionName::Grabber(sectionNumber); }
    bool IsFeatureOn(EMV_FEATURE_ID id) const { return (featureMask >> id & 1u) != 0; }
    /// Logs that `what` could not be saved and returns MV_CONFIG_NOT_SAVED.
    MV_ERRCODE NotSaved(const char* what, const CIniFile* file) const;
    /// Sets section number, QZR id and active mode of all cameras that have a section.
    void ApplyCameraSections();
    void ApplyCameraSection(CMivoraCamera& camera, std::int32_t section);
    /// The number of the section with the camera's unique id; -1 if there is none.
    std::int32_t FindCameraSection(const CMivoraCamera& camera);
    /// The channel at an index of the list, or null.
    CCmdChannel* ChannelAt(std::int32_t index);
    /// Empties the list and returns its first node; the caller then owns all nodes.
    CCmdChannel* TakeChannels();

    void* const moduleInstance;
    ILogSink* const sink;

    // Set on the configuring thread before other threads use the grabber.
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

    // The nodes change only on the thread that initialises or refreshes the grabber.
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

    platform::Mutex channelMutex; // guards the list; not held while a channel is called
    CCmdChannel* firstChannel GUARDED_BY(channelMutex) = nullptr;
    std::int32_t actChannel GUARDED_BY(channelMutex) = -1;

    platform::Mutex windowMutex;
    std::vector<MV_WINDOW> windows GUARDED_BY(windowMutex);

    std::atomic<std::uint32_t> featureMask{(1u << EMV_FEATURE_COUNT) - 1};
    std::atomic<std::uint32_t> grabberBits{0};

    std::atomic<std::uint32_t> exposure{0};
    std::atomic<std::uint32_t> interval{0};
    std::atomic<std::int32_t> timeBase{kMinTimeBase};
    std::atomic<std::uint32_t> savedExposure{0};
    std::atomic<std::uint32_t> savedInterval{0};
    std::atomic<std::int32_t> savedTimeBase{kMinTimeBase};
    std::atomic<std::uint32_t> timerMode{0};
    std::atomic<std::uint32_t> timerEnabled{0};
};
