// grabber_config.cpp - saves and loads the configuration of a grabber and its cameras
#include "grabber_impl.h"

#include "config_access.h"
#include "guarded.h"
#include "platform/text.h"

#include <cstdint>
#include <optional>

namespace {

struct FeatureKey {
    EMV_FEATURE_ID id;
    const char* key;
};

constexpr FeatureKey kFeatureKeys[] = {
    {EMV_FEATURE_POST_PROCESS, "PostProcess"},
    {EMV_FEATURE_KEEP_NEWEST, "KeepNewest"},
    {EMV_FEATURE_CAM_CFG_CHANGE, "CamCfgChange"},
    {EMV_FEATURE_CAM_CNTRL_EVENT, "CamCntrlEvent"},
};
static_assert(sizeof kFeatureKeys / sizeof kFeatureKeys[0] == EMV_FEATURE_COUNT);

template <typename Target, typename Value>
void StoreIfGiven(Target& target, const std::optional<Value>& value) {
    if (value) {
        target = *value;
    }
}

/// Creates a channel by type name (case ignored); null if the module has no such type.
CCmdChannel* MakeChannel(CMivoraGrabber& grabber, const std::string& typeName) {
    for (std::uint32_t type = 0; type < grabber.GetNumCmdChannelTypes(); ++type) {
        CCmdChannel* const channel = grabber.CreateCmdChannel(type);
        if (channel &&
            platform::CompareNoCase(channel->GetChannelTypeName(), typeName.c_str()) == 0) {
            return channel;
        }
        grabber.DeleteCmdChannel(channel);
    }
    return nullptr;
}

/// Replaces the channel list with the one in the ini file, if the file contains one.
void LoadChannels(CMivoraGrabber& grabber, const CIniFile& ini, const ConfigReader& grabberSection,
                  ILogSink* sink) {
    const std::optional<std::uint32_t> count = grabberSection.Unsigned("NumCmdChannels");
    if (!count) {
        return;
    }
    grabber.DeleteCmdChannelList();
    for (std::uint32_t i = 0; i < *count; ++i) {
        const SectionName section =
            SectionName::Channel(grabber.GetSectionNumber(), static_cast<std::int32_t>(i));
        const std::optional<std::string> typeName = ConfigReader(ini, section).Text("TYPE");
        if (!typeName) {
            break;
        }
        CCmdChannel* const channel = MakeChannel(grabber, *typeName);
        if (!channel || channel->GetConfig(grabber.GetIni(), section.Text()) != MV_OK) {
            if (sink) {
                sink->Write(kMvLogError,
                            "Mivora: LoadGrabberConfig: Cannot make channel %s of type \"%s\"",
                            section.Text(), typeName->c_str());
            }
            grabber.DeleteCmdChannel(channel);
            continue;
        }
        grabber.AddCmdChannel(channel);
    }
    if (const std::optional<std::int32_t> active = grabberSection.Signed("ActCmdChannel")) {
        grabber.SetActCmdChannelIndex(*active);
    }
}

/// Returns true if all channels have been written.
bool SaveChannels(CMivoraGrabber& grabber, CIniFile& ini, ConfigWriter& grabberSection) {
    bool saved = true;
    std::int32_t index = 0;
    for (CCmdChannel* channel = grabber.GetFirstCmdChannel(); channel;
         channel = channel->GetNext()) {
        const SectionName section = SectionName::Channel(grabber.GetSectionNumber(), index);
        saved = channel->SetConfig(&ini, section.Text()) == MV_OK && saved;
        ++index;
    }
    grabberSection.Signed("NumCmdChannels", index);
    grabberSection.Signed("ActCmdChannel", grabber.GetActCmdChannelIndex());
    return saved;
}

/// The number for a new camera section: one more than the highest in use or, if that would
/// overflow, the lowest free number.
std::int32_t FreeCameraSection(CMivoraGrabber& grabber, const CIniFile& ini) {
    const std::int32_t biggest = grabber.GetBiggestSectionNum(kCameraSectionPrefix);
    if (biggest < INT32_MAX) {
        return biggest + 1;
    }
    std::int32_t number = 0;
    while (ini.HasSection(SectionName::Camera(number).Text())) {
        ++number;
    }
    return number;
}

void SaveCamera(const CMivoraCamera& camera, ConfigWriter& section) {
    section.Hex("CameraUniqueID", camera.GetCameraUniqueID());
    section.Text("CameraName", camera.GetCameraName());
    section.Unsigned("QZRCameraID", camera.GetQZRCameraID());
    section.Signed("ActMode", camera.GetActGfxModeIndex());
    section.Unsigned("NumModes", camera.GetNumGfxModes());
}

void SaveMode(CMivoraGfxMode& mode, ConfigWriter& section) {
    section.Unsigned("Width", mode.GetxRes());
    section.Unsigned("Height", mode.GetyRes());
    section.Unsigned("Components", mode.GetNumComponents());
    section.Unsigned("AllocatedBits", mode.GetAllocatedBitPerComponent());
    section.Unsigned("BitStart", mode.GetBitStartComponent());
    section.Unsigned("Bits", mode.GetBitPerComponent());
    section.Signed("ColorCoding", mode.GetColorCoding());
    section.Unsigned("CFAxOffset", mode.GetCFAxOffset());
    section.Unsigned("CFAyOffset", mode.GetCFAyOffset());
}

} // namespace

std::int32_t CMivoraGrabber::Impl::FindCameraSection(const CMivoraCamera& camera) {
    const CIniFile* const ini = CameraIni();
    for (std::uint32_t i = 0; const char* const name = ini ? ini->GetSectionName(i) : nullptr;
         ++i) {
        const std::optional<std::int32_t> number = SectionNumber(name, kCameraSectionPrefix);
        if (number && ConfigReader(*ini, SectionName::Camera(*number)).Unsigned("CameraUniqueID") ==
                          camera.GetCameraUniqueID()) {
            return *number;
        }
    }
    return -1;
}

void CMivoraGrabber::Impl::ApplyCameraSection(CMivoraCamera& camera, std::int32_t section) {
    camera.SetCameraSectionNum(section);
    const ConfigReader reader(*CameraIni(), SectionName::Camera(section));
    if (const std::optional<std::uint32_t> id = reader.Unsigned("QZRCameraID")) {
        camera.SetQZRCameraID(*id);
    }
    // A saved mode of -1 is ignored: a camera with modes must keep an active one.
    const std::optional<std::int32_t> mode = reader.Signed("ActMode");
    if (mode && *mode >= 0) {
        camera.SetActGfxModeIndex(*mode);
    }
}

void CMivoraGrabber::Impl::ApplyCameraSections() {
    Guarded(false, [&] {
        for (CMivoraCamera* camera = firstCamera; camera; camera = camera->GetNext()) {
            const std::int32_t section = FindCameraSection(*camera);
            if (section >= 0) {
                ApplyCameraSection(*camera, section);
            }
        }
        return true;
    });
}

MV_ERRCODE CMivoraGrabber::LoadGrabberConfig() {
    CIniFile* const ini = GetIni();
    if (!ini) {
        return MV_OK;
    }
    return Guarded(MV_REFUSED, [&] {
        const ConfigReader section(*ini, impl->GrabberSection());
        const std::optional<std::uint32_t> exposure = section.Unsigned("Exposure");
        const std::optional<std::uint32_t> interval = section.Unsigned("Interval");
        std::optional<std::int32_t> timeBase = section.Signed("TimeBase");
        if (timeBase && (*timeBase < kMinTimeBase || *timeBase > 0)) {
            timeBase.reset();
        }
        StoreIfGiven(impl->savedExposure, exposure);
        StoreIfGiven(impl->savedInterval, interval);
        StoreIfGiven(impl->savedTimeBase, timeBase);
        if (exposure || interval || timeBase) {
            SetDefaultIodTimerConfigToGrabber();
        }
        StoreIfGiven(impl->timerMode, section.Unsigned("TimerMode"));
        StoreIfGiven(impl->timerEnabled, section.Unsigned("TimerEnabled"));
        StoreIfGiven(impl->grabberBits, section.Unsigned("GrabberBits"));
        for (const FeatureKey& feature : kFeatureKeys) {
            if (const std::optional<std::uint32_t> on = section.Unsigned(feature.key)) {
                SetFeature(feature.id, *on);
            }
        }
        LoadChannels(*this, *ini, section, impl->sink);
        impl->ApplyCameraSections();
        return MV_OK;
    });
}

MV_ERRCODE CMivoraGrabber::SaveGrabberConfig() {
    CIniFile* const ini = GetIni();
    if (!ini) {
        return impl->NotSaved("the configuration", nullptr);
    }
    return Guarded(MV_REFUSED, [&] {
        // The camera sections may be in a separate file.
        CIniFile* const cameraIni = impl->CameraIni();
        IniBatch grabberBatch(*ini);
        std::optional<IniBatch> cameraBatch;
        if (cameraIni != ini) {
            cameraBatch.emplace(*cameraIni);
        }
        if (!grabberBatch.HasBegun() || (cameraBatch && !cameraBatch->HasBegun())) {
            return impl->NotSaved("the configuration", ini);
        }
        ConfigWriter section(*ini, impl->GrabberSection());
        section.Unsigned("Exposure", impl->savedExposure);
        section.Unsigned("Interval", impl->savedInterval);
        section.Signed("TimeBase", impl->savedTimeBase);
        section.Unsigned("TimerMode", impl->timerMode);
        section.Unsigned("TimerEnabled", impl->timerEnabled);
        section.Hex("GrabberBits", impl->grabberBits);
        for (const FeatureKey& feature : kFeatureKeys) {
            section.Unsigned(feature.key, impl->IsFeatureOn(feature.id) ? 1 : 0);
        }
        bool saved = SaveChannels(*this, *ini, section) && section.Succeeded();
        // Cameras without a section have no settings of their own to be saved.
        for (const CMivoraCamera* camera = GetFirstCamera(); camera; camera = camera->GetNext()) {
            if (camera->GetCameraSectionNum() >= 0) {
                ConfigWriter cameraSection(*cameraIni,
                                           SectionName::Camera(camera->GetCameraSectionNum()));
                SaveCamera(*camera, cameraSection);
                saved = cameraSection.Succeeded() && saved;
            }
        }
        saved = grabberBatch.End() && saved;
        saved = (!cameraBatch || cameraBatch->End()) && saved;
        return saved ? MV_OK : impl->NotSaved("the configuration", ini);
    });
}

MV_ERRCODE CMivoraGrabber::SaveCameraModeConfig() {
    CMivoraCamera* const camera = GetActCamera();
    if (!camera) {
        return MV_NO_CAMERA;
    }
    CIniFile* const ini = impl->CameraIni();
    if (!ini) {
        return impl->NotSaved("the camera", nullptr);
    }
    return Guarded(MV_REFUSED, [&] {
        std::int32_t number = camera->GetCameraSectionNum();
        if (number < 0) {
            number = impl->FindCameraSection(*camera);
        }
        if (number < 0) {
            number = FreeCameraSection(*this, *ini);
        }
        IniBatch batch(*ini);
        ConfigWriter section(*ini, SectionName::Camera(number));
        SaveCamera(*camera, section);
        bool saved = section.Succeeded();
        std::uint32_t index = 0;
        for (CMivoraGfxMode* mode = camera->GetFirstGfxMode(); mode; mode = mode->GetNext()) {
            ConfigWriter modeSection(*ini, SectionName::Mode(number, index));
            SaveMode(*mode, modeSection);
            saved = modeSection.Succeeded() && saved;
            ++index;
        }
        if (!batch.End() || !saved) {
            return impl->NotSaved("the camera", ini);
        }
        camera->SetCameraSectionNum(number);
        return MV_OK;
    });
}
