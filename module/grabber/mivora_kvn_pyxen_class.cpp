// mivora_kvn_pyxen_class.cpp - the grabber's slots, which delegate to its parts
#include "grabber/mivora_kvn_pyxen_class.h"

#include "grabber/camera_key.h"
#include "grabber/camera_list.h"
#include "grabber/configuration.h"
#include "grabber/grabber_dialogs.h"
#include "grabber/mivora_camera_kvn_pyxen.h"
#include "grabber/mivora_gfx_mode_kvn_pyxen.h"
#include "sdk/callback_scope.h"
#include "sdk/logger.h"
#include "sdk/malloc_array.h"
#include "sdk/no_throw.h"
#include "serial/cmd_kvn_pyxen.h"

#include <optional>

using namespace pyxen;

namespace {

constexpr const char* kDriverDescription =
    "Mivora grabber library for Korvane Pyxen compatible cameras";
// Compatibility: the name is the same on every platform.
constexpr const char* kDriverName = "MivoraKVNPyxen.dll";
constexpr uint32_t kChannelTypeCount = 2;
constexpr uint32_t kHostSerialChannelType = 0;
constexpr uint32_t kCameraSerialChannelType = 1;

} // namespace

// Gives the parameters access to what the host's base class keeps for its modules.
class CMivoraKVNPyxenClass::ParameterHost final : public IParameterHost {
public:
    explicit ParameterHost(CMivoraKVNPyxenClass& owner) : grabber(owner) {}

    MV_ERRCODE CheckTimerState() const override {
        if (!grabber.initialized || !grabber.session.Api().IsValid()) {
            return MV_NOT_INITIALISED;
        }
        return grabber.cameraOpen ? MV_OK : MV_CAMERA_NOT_OPEN;
    }
    uint64_t GetFramesReceived() const override { return grabber.acquisition.FramesReceived(); }
    uint32_t GetTimerMode() const override { return grabber.GetTimerMode(); }
    uint32_t GetTimerEnabled() const override { return grabber.GetTimerEnabled(); }
    uint32_t GetExposure() const override { return grabber.GetExposureValue(); }
    uint32_t GetInterval() const override { return grabber.GetIntervalValue(); }
    int32_t GetTimeBase() const override { return grabber.GetTimeBase(); }
    void SetExposure(uint32_t value) override { grabber.SetExposureValue(value); }
    void SetInterval(uint32_t value) override { grabber.SetIntervalValue(value); }
    void SetTimeBase(int32_t exponent) override { grabber.SetTimeBase(exponent); }
    uint32_t GetSavedExposure() const override { return grabber.GetSavedExposure(); }
    uint32_t GetSavedInterval() const override { return grabber.GetSavedInterval(); }
    void SetSavedExposure(uint32_t value) override { grabber.SetSavedExposure(value); }
    void SetSavedInterval(uint32_t value) override { grabber.SetSavedInterval(value); }
    void SetSavedTimeBase(int32_t exponent) override { grabber.SetSavedTimeBase(exponent); }

private:
    CMivoraKVNPyxenClass& grabber;
};

CMivoraKVNPyxenClass::CMivoraKVNPyxenClass(void* moduleInstance)
    : CPyxenGrabber(moduleInstance),
      session(GetLogSink()),
      openCamera(session.Api(), identity, GetLogSink()),
      parameterHost(std::make_unique<ParameterHost>(*this)),
      parameters(openCamera, *parameterHost),
      discovery(session.Api(), openCamera.Caches(), identity, GetLogSink()),
      acquisition(static_cast<CPyxenGrabber*>(this), session.Api(), openCamera.Handle(),
                  serialMutex, *this, GetLogSink()),
      services(*this) {
    CMivoraKVNPyxenClass::InitMembers();
}

CMivoraKVNPyxenClass::~CMivoraKVNPyxenClass() {
    CMivoraKVNPyxenClass::DeInit();
    DeleteCmdChannelList();
}

void CMivoraKVNPyxenClass::InitMembers() {
    SetDriverDesc(kDriverDescription);
    SetDriverName(kDriverName);
    SetDriverVersion("");
    session.ForgetInterfaces();
    acquisition.CreateEvents();
    acquisition.UseStrategy(false);
}

uint32_t CMivoraKVNPyxenClass::IsCameraOpen() {
    return cameraOpen ? 1 : 0;
}

MV_ERRCODE CMivoraKVNPyxenClass::LoadGrabberConfig() {
    const MV_ERRCODE result = CPyxenGrabber::LoadGrabberConfig();
    if (result != MV_OK) {
        return result;
    }
    acquisition.UseConversionThreads(LoadConversionThreads(GetIni(), GetSectionNumber()));
    return LoadChosenCamera(GetIni(), GetSectionNumber(), identity) ? MV_OK : MV_REFUSED;
}

MV_ERRCODE CMivoraKVNPyxenClass::SaveGrabberConfig() {
    Logger(GetLogSink()).Information("CMivoraKVNPyxenClass::SaveGrabberConfig");
    CMivoraCameraKVNPyxen* const camera = ActCameraNode();
    const MV_ERRCODE result = CPyxenGrabber::SaveGrabberConfig();
    if (result != MV_OK) {
        return result;
    }
    return SaveChosenCamera(GetIni(), GetSectionNumber(),
                            camera ? camera->Record().cameraIdExtended : nullptr)
               ? MV_OK
               : MV_CONFIG_NOT_SAVED;
}

bool CMivoraKVNPyxenClass::IsWaitedFor() const {
    return acquisition.IsInside() || ModuleServices::IsInsideReceiver();
}

bool CMivoraKVNPyxenClass::IsInsideCallback() const {
    return acquisition.IsInside() || EventScope::IsInside();
}

MV_ERRCODE CMivoraKVNPyxenClass::OpenActCamera() {
    if (initialized && ActCameraNode() && IsWaitedFor()) {
        return MV_BUSY;
    }
    MV_ERRCODE result = MV_REFUSED;
    {
        const ServiceLockHold hold(services.Lock());
        result = OpenLocked();
    }
    if (result == MV_OK) {
        UpdateCamCntrlDialogs(kMvUpdateAll); // whose receivers may ask for the new features
    }
    return result;
}

MV_ERRCODE CMivoraKVNPyxenClass::OpenLocked() {
    CMivoraCameraKVNPyxen* const camera = ActCameraNode();
    Logger(GetLogSink()).Information("CMivoraKVNPyxenClass::OpenActCamera");
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    if (!camera) {
        return MV_NO_CAMERA;
    }
    services.LeaveCamera(); // if the host has not closed it
    if (!openCamera.Open(camera->Record(), GetIni(), GetConfigDirectory(), acquisition)) {
        return MV_REFUSED;
    }
    cameraOpen = true;
    return MV_OK;
}

MV_ERRCODE CMivoraKVNPyxenClass::CamCntrlDialog(MV_WINDOW parent) {
    const CMivoraCamera* camera = GetActCamera();
    if (!camera) {
        return MV_NO_CAMERA;
    }
    if (camera->GetCamCntrlDlgIndex() != kFeatureControlDialogIndex) {
        return CPyxenGrabber::CamCntrlDialog(parent);
    }
    return NoThrow(MV_REFUSED, [this] {
        if (!GetCamCntrlDialogObject()) {
            std::unique_ptr<ICamCntrlDialog> made(grabber_dialogs::CreateFeatureControl(*this));
            SetCamCntrlDialogObject(made.get());
            if (GetCamCntrlDialogObject()) {
                static_cast<void>(made.release()); // destroyed by DeInit
            }
        }
        ICamCntrlDialog* const dialog = GetCamCntrlDialogObject();
        if (!dialog) {
            return MV_REFUSED;
        }
        dialog->Show();
        return MV_OK;
    });
}

MV_ERRCODE CMivoraKVNPyxenClass::GrabberConfigDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) {
    grabber_dialogs::ShowMessage(
        parent,
        "This dialog is currently not implemented.\r\nPlease continue by selecting the camera.",
        "Info", false, GetLogSink());
    if (exitCode) {
        *exitCode = grabber_dialogs::HasWindows() ? MV_DLG_OK : MV_DLG_CANCEL;
    }
    return MV_OK;
}

uint32_t CMivoraKVNPyxenClass::GetNumCmdChannelTypes() {
    return kChannelTypeCount;
}

CCmdChannel* CMivoraKVNPyxenClass::CreateCmdChannel(uint32_t type) {
    switch (type) {
    case kHostSerialChannelType:
        return CreateCmdSerialInstance();
    case kCameraSerialChannelType:
        return NoThrow<CCmdChannel*>(nullptr, [&] { return new CCmdKVNPyxen(this, serialMutex); });
    default:
        return nullptr;
    }
}

void CMivoraKVNPyxenClass::DeleteCmdChannel(CCmdChannel* channel) {
    if (!channel) {
        return;
    }
    switch (channel->GetChannelKind()) {
    case MVCMD_SERIAL:
        DeleteCmdSerialInstance(channel);
        break;
    case MVCMD_MODULE:
        delete channel;
        break;
    default:
        break;
    }
}

CMivoraCamera* CMivoraKVNPyxenClass::CreateCamera() {
    return NoThrow<CMivoraCamera*>(nullptr, [] { return new CMivoraCameraKVNPyxen; });
}

uint32_t CMivoraKVNPyxenClass::GetNumFeatureCaches() {
    return openCamera.Caches().GetCount();
}

FeatureCache* CMivoraKVNPyxenClass::GetFeatureCache(uint32_t index) {
    return openCamera.Caches().Get(index);
}

FeatureCache* CMivoraKVNPyxenClass::GetFeatureCacheByName(const char* name) {
    return openCamera.Caches().FindCacheByName(name);
}

FeatureCache* CMivoraKVNPyxenClass::GetFeatureCacheByHandle(PxnHandle handle) {
    return openCamera.Caches().FindByHandle(handle);
}

// ---- acquisition parameters ----

MV_ERRCODE CMivoraKVNPyxenClass::GetGrabberParamLimits(uint32_t id, uint64_t* min1, uint64_t* max1,
                                                       uint64_t* min2, uint64_t* max2) {
    const std::optional<MV_ERRCODE> served = parameters.GetLimits(id, min1, max1, min2, max2);
    return served ? *served : CPyxenGrabber::GetGrabberParamLimits(id, min1, max1, min2, max2);
}

MV_ERRCODE CMivoraKVNPyxenClass::GetGrabberParam(uint32_t id, uint64_t* value1, uint64_t* value2) {
    if (const std::optional<MV_ERRCODE> served = parameters.Get(id, value1, value2)) {
        return *served;
    }
    if (id != MVGF_ACQUISITION_CAPABILITIES) {
        return CPyxenGrabber::GetGrabberParam(id, value1, value2);
    }
    uint64_t capabilities = 0;
    const MV_ERRCODE result = CPyxenGrabber::GetGrabberParam(id, &capabilities, value2);
    if (result == MV_OK && value1) {
        *value1 = Parameters::GetCapabilities(capabilities);
    }
    return result;
}

MV_ERRCODE CMivoraKVNPyxenClass::SetGrabberParam(uint32_t id, uint64_t value1, uint64_t value2) {
    ParameterLimits limits;
    if (const MV_ERRCODE result =
            GetGrabberParamLimits(id, &limits.min1, &limits.max1, &limits.min2, &limits.max2)) {
        return result;
    }
    const std::optional<MV_ERRCODE> served = parameters.Set(id, limits, value1, value2);
    return served ? *served : CPyxenGrabber::SetGrabberParam(id, value1, value2);
}

bool CMivoraKVNPyxenClass::GetExposureTime(uint32_t* value) {
    return parameters.ReadExposure(value);
}

bool CMivoraKVNPyxenClass::GetFrameInterval(uint32_t* value) {
    return parameters.ReadInterval(value);
}

void CMivoraKVNPyxenClass::GetTimerMicroseconds(uint64_t* exposure, uint64_t* interval) {
    parameters.GetMicroseconds(exposure, interval);
}

void CMivoraKVNPyxenClass::SetTimerMicroseconds(uint64_t exposure, uint64_t interval) {
    uint32_t newExposure = 0;
    uint32_t newInterval = 0;
    if (parameters.SaveMicroseconds(exposure, interval, newExposure, newInterval)) {
        ChangeTimerTB(newExposure, newInterval, GetTimerEnabled());
        UpdateCamCntrlDialogs(kMvUpdateParameters | kMvUpdateTimer);
    }
}

void CMivoraKVNPyxenClass::OnTimingFeatureChanged(PxnHandle, const char* featureName) {
    if (parameters.StoreIfChanged(featureName)) {
        UpdateCamCntrlDialogs(kMvUpdateParameters);
        SignalCamCntrlDlgEvent(kMvEventTimingChanged);
    }
}

void CMivoraKVNPyxenClass::InvalidationCallback(PxnHandle handle, const char* featureName) {
    if (discovery.ConcernsHost(handle, featureName)) {
        SignalCamCfgChange();
    }
}

bool CMivoraKVNPyxenClass::NotifyBufferImpact(bool finished) {
    if (finished) {
        SignalCamCntrlDlgEvent(kMvEventBufferImpactEnded);
        return true;
    }
    return SignalCamCntrlDlgEvent(kMvEventBufferImpactBegins) != 0;
}

MV_ERRCODE CMivoraKVNPyxenClass::BuildInternalList() {
    PxnCameraInfo* listed = nullptr;
    const uint32_t count = session.Api().AllocateAndGetCameraList(&listed);
    MallocArray<PxnCameraInfo> records;
    records.Adopt(listed);
    if (CMivoraCameraKVNPyxen* const camera = ActCameraNode()) {
        const char* const id = camera->Record().cameraIdExtended;
        if (!identity.Select(id ? id : "")) {
            return MV_REFUSED;
        }
    }
    if (GetFirstCamera()) {
        const MV_ERRCODE result = DeleteInternalList();
        if (result != MV_OK) {
            return result;
        }
    }
    CameraNodes nodes;
    if (!MakeCameraNodes(records.Get(), count, identity, nodes)) {
        StoreActCameraIndex(-1);
        return MV_REFUSED;
    }
    for (CMivoraCamera* node = nodes.first; node; node = node->GetNext()) {
        if (node->BuildGfxModeList(this) == 0) {
            // Out of memory. A camera without its mode could not be used before the next listing.
            DeleteCameraNodes(nodes.first);
            StoreActCameraIndex(-1);
            return MV_REFUSED;
        }
    }
    StoreActCameraIndex(nodes.chosen);
    SetFirstCamera(nodes.first);
    return MV_OK;
}

MV_ERRCODE CMivoraKVNPyxenClass::RefreshCameraList() {
    if (!initialized) {
        return MV_NOT_INITIALISED;
    }
    if (IsWaitedFor()) {
        return MV_BUSY;
    }
    {
        const ServiceLockHold hold(services.Lock());
        CloseActCamera();
        const CMivoraCamera* const camera = GetActCamera();
        const bool hadCamera = camera != nullptr;
        const uint32_t key = hadCamera ? camera->GetCameraUniqueID() : 0;
        DeleteInternalList();
        BuildInternalList();
        StoreActCameraIndex(hadCamera ? GetCameraIndexByCameraUniqueID(key) : -1);
    }
    UpdateCamCntrlDialogs(kMvUpdateAll);
    return MV_OK;
}

MV_ERRCODE CMivoraKVNPyxenClass::SelectCameraDialog(MV_WINDOW parent, MV_DLG_EXITCODE* exitCode) {
    if (!initialized) {
        grabber_dialogs::ShowMessage(parent, "MivoraKVNPyxen has not been properly initalized!",
                                     "Error", false, GetLogSink());
        return MV_NOT_INITIALISED;
    }
    if (IsWaitedFor()) {
        return MV_BUSY;
    }
    MV_DLG_EXITCODE ending = MV_DLG_CANCEL;
    const MV_ERRCODE result = NoThrow(MV_REFUSED, [&] { return ChooseCamera(parent, ending); });
    if (exitCode) {
        *exitCode = ending;
    }
    return result;
}

MV_ERRCODE CMivoraKVNPyxenClass::ChooseCamera(MV_WINDOW parent, MV_DLG_EXITCODE& ending) {
    std::string chosen = identity.GetSelected();
    const MV_ERRCODE shown =
        grabber_dialogs::RunDeviceFinder(parent, session.Api(), GetLogSink(), chosen, ending);
    if (shown != MV_OK || ending != MV_DLG_OK) {
        return shown;
    }
    if (!identity.Select(chosen.c_str())) {
        return MV_REFUSED;
    }
    const MV_ERRCODE result = RefreshCameraList();
    StoreActCameraIndex(GetCameraIndexByCameraUniqueID(CameraKey(chosen.c_str())));
    return result;
}

CMivoraCameraKVNPyxen* CMivoraKVNPyxenClass::ActCameraNode() {
    return static_cast<CMivoraCameraKVNPyxen*>(GetActCamera());
}

CMivoraGfxModeKVNPyxen* CMivoraKVNPyxenClass::ActMode() {
    CMivoraCamera* const camera = GetActCamera();
    return camera ? static_cast<CMivoraGfxModeKVNPyxen*>(camera->GetActGfxMode()) : nullptr;
}
