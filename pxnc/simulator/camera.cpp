// camera.cpp - a virtual camera: its features, its local device and its streams
#include "pxnc/simulator/camera.h"

#include "pxnc/simulator/camera_features.h"
#include "pxnc/skeleton/invalidations.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace pxsim {

Camera::Camera(const CameraConfiguration& newSetup, const InterfaceConfiguration& interface,
               const SharedServices& newServices, FrameScheduler& newScheduler)
    : Module(newServices.strings, newServices.events, std::make_shared<platform::Mutex>()),
      setup(newSetup),
      interfaceType(interface.type),
      services(newServices),
      scheduler(newScheduler),
      id(services.strings.Intern(setup.id)),
      extendedId(services.strings.Intern(setup.extendedId)),
      name(services.strings.Intern(setup.name)),
      model(services.strings.Intern(setup.model)),
      serial(services.strings.Intern(setup.serial)),
      powerOn(skeleton::Clock::now()),
      registers(*this) {
    plugged = setup.plugged;
    permittedAccess = setup.permittedAccess;
    AddFeatures();
    localDevice = std::make_unique<Module>(services.strings, services.events, SharedMutex());
    AddLocalDeviceFeatures(*localDevice, *this);
    const auto turns = std::make_shared<skeleton::CallbackTurns>();
    for (std::uint32_t index = 0; index < setup.streams; ++index) {
        streams.push_back(
            std::make_unique<Stream>(*this, index, services.strings, services.events, turns));
    }
    vanished = std::make_shared<std::atomic<bool>>(false);
    ApplySetup();
}

Camera::~Camera() {
    CloseEngines();
    // The engines call back into this object until their threads are joined.
    streams.clear();
}

void Camera::AddFeatures() {
    AddDeviceControl(*this);
    AddImageFormatControl(*this);
    AddAcquisitionControl(*this);
    AddAnalogControl(*this);
    AddLookUpControl(*this);
    AddDigitalIoControl(*this);
    AddCounterAndTimerControl(*this);
    AddEventControl(*this);
    AddChunkDataControl(*this);
    AddUserSetControl(*this);
    AddFileAccessControl(*this);
    AddSequencerControl(*this);
    AddActionControl(*this);
    AddTransportLayerControl(*this);
    AddSimulatorControl(*this);
}

void Camera::ApplySetup() {
    for (const Setting& omitted : setup.omitted) {
        bool known = Omit(omitted.name.c_str());
        known = localDevice->Omit(omitted.name.c_str()) || known;
        for (auto& stream : streams) {
            known = stream->Omit(omitted.name.c_str()) || known;
        }
        if (!known) {
            setupProblems.push_back(
                {id, "there is no feature \"" + omitted.name + "\" to omit", omitted.line});
        }
    }
    for (const Setting& feature : setup.features) {
        if (!Find(feature.name.c_str())) {
            setupProblems.push_back(
                {id, "there is no feature \"" + feature.name + "\"", feature.line});
        } else if (ApplyInitialValue(feature) != PxnErrSuccess) {
            setupProblems.push_back(
                {id,
                 "the feature \"" + feature.name + "\" refuses the value \"" + feature.value + "\"",
                 feature.line});
        }
    }
}

PxnError Camera::ApplyInitialValue(const Setting& setting) {
    platform::MutexLock lock(mutex);
    Feature* feature = Find(setting.name.c_str());
    return feature ? WriteAsText(*feature, setting.value) : PxnError{PxnErrNotFound};
}

void Camera::SetTopology(PxnHandle transportLayer, PxnHandle interface) {
    transportLayerHandle = transportLayer;
    interfaceHandle = interface;
}

bool Camera::HasId(const char* text) const {
    return std::strcmp(text, id) == 0 || std::strcmp(text, extendedId) == 0;
}

PxnError Camera::Open(std::uint32_t accessMode, PxnHandle* handle) {
    const bool full = accessMode == PxnAccessModeFull;
    platform::MutexLock serialise(openCloseMutex);
    {
        platform::MutexLock lock(mutex);
        if (const PxnError refused = CheckAccess(accessMode); refused != PxnErrSuccess) {
            return refused;
        }
    }
    if (full) {
        CloseEngines(); // a callback from before the unplugging may still be running
    }
    platform::MutexLock lock(mutex);
    if (!plugged) {
        return PxnErrNotFound;
    }
    if (!IsOpen()) {
        CreateChildHandles();
    }
    skeleton::Target target = MakeTarget(*this, streams.front().get());
    target.isCamera = true;
    target.isWritable = full;
    *handle = services.handles.Add(std::move(target));
    sessions.push_back({*handle, accessMode});
    AddHandle(*handle);
    if (full) {
        for (std::size_t index = 0; index < streams.size(); ++index) {
            streams[index]->Engine().Open(*handle, streamHandleLists.back()[index]);
        }
    }
    ++openedCount;
    return PxnErrSuccess;
}

skeleton::Target Camera::MakeTarget(skeleton::Module& module, Stream* stream) {
    // Every call keeps the backend alive, and with it the modules.
    const std::shared_ptr<void> notOwned;
    skeleton::Target target{{notOwned, &module}};
    if (stream) {
        target.frames = {notOwned, &stream->Engine()};
    }
    target.vanished = vanished;
    return target;
}

void Camera::CloseEngines() {
    for (auto& stream : streams) {
        stream->Engine().EndAcquisition();
        stream->Engine().Close();
    }
}

PxnError Camera::CheckAccess(std::uint32_t accessMode) const {
    if (!plugged) {
        return PxnErrNotFound;
    }
    const bool taken = accessMode == PxnAccessModeFull && IsOpenInFull();
    return taken || (permittedAccess & accessMode) == 0 ? PxnErrInvalidAccess : PxnErrSuccess;
}

bool Camera::IsOpenInFull() const {
    return std::any_of(sessions.begin(), sessions.end(), [](const Session& session) {
        return session.accessMode == PxnAccessModeFull;
    });
}

void Camera::CreateChildHandles() {
    localDeviceHandle = services.handles.Add(MakeTarget(*localDevice, nullptr));
    localDevice->AddHandle(localDeviceHandle);
    std::vector<PxnHandle> list;
    for (auto& stream : streams) {
        list.push_back(services.handles.Add(MakeTarget(*stream, stream.get())));
        stream->AddHandle(list.back());
    }
    streamHandleLists.push_back(std::move(list));
}

void Camera::RemoveChildHandles() {
    services.handles.Remove(localDeviceHandle);
    localDevice->RemoveHandle(localDeviceHandle);
    localDeviceHandle = nullptr;
    for (std::size_t index = 0; index < streams.size(); ++index) {
        PxnHandle handle = streamHandleLists.back()[index];
        services.handles.Remove(handle);
        streams[index]->RemoveHandle(handle);
    }
}

void Camera::Close(PxnHandle handle) {
    std::vector<PxnHandle> gone{handle};
    {
        platform::MutexLock serialise(openCloseMutex);
        bool closeEngines = false;
        {
            platform::MutexLock lock(mutex);
            if (!services.handles.Remove(handle)) {
                return;
            }
            ++closedCount;
            RemoveHandle(handle);
            if (std::erase(vanishedHandles, handle) != 0) {
                for (PxnHandle child : vanishedChildren) {
                    services.handles.Remove(child);
                }
                gone.insert(gone.end(), vanishedChildren.begin(), vanishedChildren.end());
                vanishedChildren.clear();
            }
            const auto removed = std::erase_if(
                sessions, [handle](const Session& one) { return one.handle == handle; });
            // The frames belong to the handle with full access, if there still is one.
            closeEngines = !IsOpenInFull();
            if (closeEngines) {
                acquiring = false;
            }
            if (removed != 0 && sessions.empty()) {
                gone.push_back(localDeviceHandle);
                gone.insert(gone.end(), streamHandleLists.back().begin(),
                            streamHandleLists.back().end());
                RemoveChildHandles();
            }
        }
        if (closeEngines) {
            CloseEngines();
        }
    }
    // Without a lock: the callback that this waits for may itself open or close a camera.
    for (PxnHandle one : gone) {
        services.events.UnregisterAll(one);
    }
}

void Camera::FillInfo(PxnCameraInfo& info) const {
    platform::MutexLock lock(mutex);
    info = {};
    info.cameraIdString = id;
    info.cameraIdExtended = extendedId;
    info.cameraName = name;
    info.modelName = model;
    info.serialString = serial;
    info.transportLayerHandle = transportLayerHandle;
    info.interfaceHandle = interfaceHandle;
    info.permittedAccess = permittedAccess;
    if (IsOpen()) {
        info.localDeviceHandle = localDeviceHandle;
        info.streamHandles = streamHandleLists.back().data();
        info.streamCount = static_cast<std::uint32_t>(streams.size());
        if (IsOpenInFull()) {
            info.permittedAccess &= ~static_cast<std::uint32_t>(PxnAccessModeFull);
        }
    }
}

void Camera::SetPermittedAccess(std::uint32_t access) {
    platform::MutexLock lock(mutex);
    permittedAccess = access;
}

bool Camera::IsPlugged() const {
    platform::MutexLock lock(mutex);
    return plugged;
}

bool Camera::Plug() {
    {
        platform::MutexLock lock(mutex);
        if (plugged) {
            return false;
        }
    }
    ResetFeatures();
    platform::MutexLock lock(mutex);
    plugged = true;
    return true;
}

bool Camera::Unplug() {
    {
        platform::MutexLock lock(mutex);
        if (!plugged) {
            return false;
        }
        plugged = false;
        acquiring = false;
        *vanished = true;
        vanished = std::make_shared<std::atomic<bool>>(false);
        for (const Session& session : sessions) {
            vanishedHandles.push_back(session.handle);
            RemoveHandle(session.handle);
        }
        if (IsOpen()) {
            sessions.clear();
            vanishedChildren.push_back(localDeviceHandle);
            localDevice->RemoveHandle(localDeviceHandle);
            localDeviceHandle = nullptr;
            for (std::size_t index = 0; index < streams.size(); ++index) {
                PxnHandle handle = streamHandleLists.back()[index];
                vanishedChildren.push_back(handle);
                streams[index]->RemoveHandle(handle);
            }
        }
    }
    for (auto& stream : streams) {
        stream->Engine().Vanish();
    }
    return true;
}

std::size_t Camera::OpenHandleCount() const {
    platform::MutexLock lock(mutex);
    return sessions.size() + vanishedHandles.size();
}

PxnError Camera::StartAcquisition() {
    platform::MutexLock lock(mutex);
    const AcquisitionPlan plan = MakePlan();
    acquiring = true;
    for (auto& stream : streams) {
        stream->Engine().BeginAcquisition(plan);
    }
    OnCaptureChanged();
    RaiseEvent(CameraEvent::kAcquisitionStart, 0);
    return PxnErrSuccess;
}

PxnError Camera::StopAcquisition() {
    platform::MutexLock lock(mutex);
    if (acquiring.exchange(false)) {
        RaiseEvent(CameraEvent::kAcquisitionEnd, 0);
    }
    for (auto& stream : streams) {
        stream->Engine().EndAcquisition();
    }
    OnCaptureChanged();
    return PxnErrSuccess;
}

PxnError Camera::SoftwareTrigger() {
    platform::MutexLock lock(mutex);
    for (auto& stream : streams) {
        stream->Engine().Trigger();
    }
    return PxnErrSuccess;
}

PxnError Camera::LineTrigger() {
    platform::MutexLock lock(mutex);
    return EnumIs("TriggerSource", "Software") ? PxnErrNotAvailable : SoftwareTrigger();
}

void Camera::UpdatePlan() {
    platform::MutexLock lock(mutex);
    if (!acquiring) {
        return;
    }
    const AcquisitionPlan plan = MakePlan();
    for (auto& stream : streams) {
        stream->Engine().UpdatePlan(plan);
    }
}

AcquisitionPlan Camera::MakePlan() const {
    AcquisitionPlan plan;
    plan.image = CurrentImage();
    if (EnumIs("AcquisitionMode", "SingleFrame")) {
        plan.frameCount = 1;
    } else if (EnumIs("AcquisitionMode", "MultiFrame")) {
        plan.frameCount = static_cast<std::uint64_t>(IntValue("AcquisitionFrameCount"));
    }
    constexpr std::int64_t kFrameStart = 0; // the state of TriggerSelector
    plan.triggered = Get<Enum>("TriggerMode").IsFor(kFrameStart, "On");
    plan.freeRunning = BoolValue("SimulatorFreeRunning");
    plan.periodNs = FramePeriodNs();
    plan.chunkBytes = ChunkBytes();
    if (Setup().kind == CameraKind::kGigE) {
        plan.packetSize = static_cast<std::uint32_t>(IntValue("GevSCPSPacketSize"));
    }
    return plan;
}

ImageSetup Camera::CurrentImage() const {
    ImageSetup image;
    image.format = FindPixelFormat(EnumValue("PixelFormat"));
    assert(image.format);
    image.width = static_cast<std::uint32_t>(IntValue("Width"));
    image.height = static_cast<std::uint32_t>(IntValue("Height"));
    image.offsetX = static_cast<std::uint32_t>(IntValue("OffsetX"));
    image.offsetY = static_cast<std::uint32_t>(IntValue("OffsetY"));
    image.pattern = static_cast<Pattern>(EnumIntValue("TestPattern"));
    image.seed = static_cast<std::uint32_t>(IntValue("TestPatternSeed"));
    image.reverseX = BoolValue("ReverseX");
    image.sensorWidth = static_cast<std::uint32_t>(IntValue("WidthMax"));
    return image;
}

std::int64_t Camera::PayloadBytes() const {
    return std::int64_t{CurrentImage().ImageBytes()} + ChunkBytes();
}

PxnError Camera::GetPayloadSize(std::uint32_t& bytes) {
    bytes = static_cast<std::uint32_t>(PayloadBytes());
    return PxnErrSuccess;
}

PxnError Camera::ReadMemory(std::uint64_t address, char* buffer, std::uint32_t size,
                            std::uint32_t& done) {
    return registers.Read(address, size, reinterpret_cast<std::uint8_t*>(buffer), done);
}

PxnError Camera::WriteMemory(std::uint64_t address, const char* bytes, std::uint32_t size,
                             std::uint32_t& done) {
    return registers.Write(address, size, reinterpret_cast<const std::uint8_t*>(bytes), done);
}

std::int64_t Camera::FramePeriodNs() const {
    return static_cast<std::int64_t>(1e9 / FloatValue("AcquisitionFrameRate"));
}

bool Camera::IsStreaming() const {
    return acquiring || std::any_of(streams.begin(), streams.end(), [](const auto& stream) {
               return stream->Engine().IsCapturing();
           });
}

void Camera::OnCaptureChanged() {
    InvalidateLocked();
    Invalidate("TLParamsLocked");
    for (auto& stream : streams) {
        stream->InvalidateLocked();
        stream->Invalidate("StreamIsGrabbing");
    }
}

void Camera::ResetFeatures() {
    registers.Reset();
    platform::MutexLock lock(mutex);
    for (const auto& feature : Features()) {
        // The camera keeps the set that it starts with.
        if (std::strcmp(feature->Name(), "UserSetDefault") != 0) {
            feature->Reset();
        }
    }
    for (const Setting& feature : setup.features) {
        ApplyInitialValue(feature);
    }
    const std::int64_t first = EnumIntValue("UserSetDefault");
    if (first != 0) {
        LoadUserSet(static_cast<std::size_t>(first));
    }
    UpdateEventMask();
    InvalidateAll();
}

void Camera::SaveUserSet(std::size_t index) {
    platform::MutexLock lock(mutex);
    userSets.Save(*this, index);
}

void Camera::LoadUserSet(std::size_t index) {
    platform::MutexLock lock(mutex);
    userSets.Load(*this, index);
    UpdateEventMask();
}

std::int64_t Camera::LinkBytesPerSecond() const {
    switch (setup.kind) {
    case CameraKind::kGigE:
        return 125000000;
    case CameraKind::kUsb:
        return 400000000;
    case CameraKind::kSerial:
        return 850000000;
    }
    return 0;
}

void Camera::OnAcquisitionFinished() {
    platform::MutexLock lock(mutex);
    const bool any = std::any_of(streams.begin(), streams.end(), [](const auto& stream) {
        return stream->Engine().IsCapturing() && stream->Engine().IsAcquiring();
    });
    if (!any && acquiring.exchange(false)) {
        OnCaptureChanged();
        RaiseEvent(CameraEvent::kAcquisitionEnd, 0);
    }
}

void Camera::OnScheduledFrame(std::uint64_t frameId) {
    scheduler.OnScheduledFrame(*this, frameId);
}

void Camera::OnFrameSent(std::uint64_t frameId) {
    ++sentFrames;
    RaiseEvent(CameraEvent::kExposureEnd, frameId);
    RaiseEvent(CameraEvent::kFrameEnd, frameId);
}

std::uint64_t Camera::Timestamp() const {
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(skeleton::Clock::now() - powerOn)
            .count());
}

} // namespace pxsim
