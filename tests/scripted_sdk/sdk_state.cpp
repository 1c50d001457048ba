// sdk_state.cpp - recording, scripting and the model
#include "tests/scripted_sdk/sdk_state.h"

#include "tests/scripted_sdk/default_model.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace scripted {
namespace {

constexpr std::uint64_t kAlways = ~std::uint64_t{0};

bool BeginsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

} // namespace

SdkState& SdkState::Instance() {
    static SdkState instance;
    return instance;
}

SdkState::SdkState() : model(DefaultModel()) {}

SdkState::~SdkState() {
    WaitForDeliveries();
}

void SdkState::Reset() {
    {
        const Lock lock(mutex);
        ++generation;
        held.clear();
        hooks.clear();
        failures.clear();
    }
    changed.notify_all();
    WaitForDeliveries();
    const Lock lock(mutex);
    model = DefaultModel();
    streamHandles.clear();
    startups = 0;
    openCameras.clear();
    calls.clear();
    announced.clear();
    queued.clear();
    completed.clear();
    capturing.clear();
    registrations.clear();
}

void SdkState::Edit(const std::function<void(Model&)>& change) {
    {
        const Lock lock(mutex);
        change(model);
    }
    changed.notify_all();
}

int SdkState::StartupCount() {
    const Lock lock(mutex);
    return startups;
}

std::vector<std::string> SdkState::Matching(const std::vector<std::string>& prefixes) const {
    if (prefixes.empty()) {
        return calls;
    }
    std::vector<std::string> result;
    for (const std::string& call : calls) {
        if (std::any_of(prefixes.begin(), prefixes.end(),
                        [&](const std::string& prefix) { return BeginsWith(call, prefix); })) {
            result.push_back(call);
        }
    }
    return result;
}

std::vector<std::string> SdkState::Calls(const std::vector<std::string>& prefixes) {
    const Lock lock(mutex);
    return Matching(prefixes);
}

std::vector<std::string> SdkState::TakeCalls(const std::vector<std::string>& prefixes) {
    const Lock lock(mutex);
    std::vector<std::string> result = Matching(prefixes);
    calls.clear();
    return result;
}

void SdkState::ClearCalls() {
    const Lock lock(mutex);
    calls.clear();
}

bool SdkState::WaitForCall(const std::string& text, unsigned timeoutMs) {
    Lock lock(mutex);
    return changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                            [&] { return !Matching({text}).empty(); });
}

void SdkState::Fail(const std::string& entry, PxnError code, unsigned nth, unsigned count) {
    const Lock lock(mutex);
    failures.push_back({entry, nullptr, "", nth - 1u, count, code});
}

void SdkState::FailAlways(const std::string& entry, PxnError code) {
    const Lock lock(mutex);
    failures.push_back({entry, nullptr, "", 0, kAlways, code});
}

void SdkState::FailFeature(PxnHandle handle, const std::string& feature, const std::string& entry,
                           PxnError code) {
    const Lock lock(mutex);
    failures.push_back({entry, handle, feature, 0, kAlways, code});
}

void SdkState::ClearFailures() {
    const Lock lock(mutex);
    failures.clear();
}

void SdkState::OnCall(const std::string& entry, std::function<void()> hook) {
    const Lock lock(mutex);
    hooks[entry] = std::move(hook);
}

void SdkState::ClearHooks() {
    const Lock lock(mutex);
    hooks.clear();
}

void SdkState::Hold(const std::string& entry) {
    const Lock lock(mutex);
    held.insert(entry);
}

void SdkState::Release(const std::string& entry) {
    {
        const Lock lock(mutex);
        held.erase(entry);
    }
    changed.notify_all();
}

bool SdkState::NextFailure(const Call& call, PxnError& code) {
    bool failed = false;
    for (Failure& failure : failures) {
        if (failure.entry.empty() ? call.entry == std::string("PxnShutdown")
                                  : failure.entry != call.entry) {
            continue;
        }
        if (!failure.feature.empty() && (failure.handle != call.handle || call.feature == nullptr ||
                                         failure.feature != call.feature)) {
            continue;
        }
        if (failure.skip > 0) {
            --failure.skip;
        } else if (failure.count > 0 && !failed) {
            failure.count -= failure.count == kAlways ? 0 : 1;
            code = failure.code;
            failed = true;
        }
    }
    return failed;
}

PxnError SdkState::Run(const Call& call, const Action& action) {
    std::function<void()> hook;
    {
        const Lock lock(mutex);
        calls.push_back(std::string(call.entry) + "(" + call.arguments + ")");
        const auto found = hooks.find(call.entry);
        if (found != hooks.end()) {
            hook = found->second;
        }
    }
    changed.notify_all();
    if (hook) {
        hook();
    }
    Lock lock(mutex);
    changed.wait(lock, [&] { return held.count(call.entry) == 0; });
    PxnError result = PxnErrSuccess;
    if (!NextFailure(call, result)) {
        result = action(lock);
    }
    lock.unlock();
    changed.notify_all();
    return result;
}

PxnError SdkState::RunFeature(const Call& call, std::uint32_t type,
                              const std::function<PxnError(Feature&)>& action) {
    return Run(call, [&](Lock&) -> PxnError {
        Module* module = FindModule(call.handle);
        if (module == nullptr) {
            return PxnErrBadHandle;
        }
        Feature* feature = call.feature != nullptr ? module->Find(call.feature) : nullptr;
        if (feature == nullptr) {
            return PxnErrNotFound;
        }
        if (type != PxnFeatureDataUnknown && feature->type != type) {
            return PxnErrWrongType;
        }
        return action(*feature);
    });
}

Module* SdkState::FindModule(PxnHandle handle) {
    if (handle == SystemHandle()) {
        return &model.system;
    }
    if (handle == ChunkHandle()) {
        return &model.chunk;
    }
    for (std::size_t i = 0; i < model.transportLayers.size(); ++i) {
        if (handle == TransportLayerHandle(i)) {
            return &model.transportLayers[i];
        }
    }
    for (std::size_t i = 0; i < model.interfaces.size(); ++i) {
        if (handle == InterfaceHandle(i)) {
            return &model.interfaces[i];
        }
    }
    for (std::size_t i = 0; i < model.cameras.size(); ++i) {
        Camera& camera = model.cameras[i];
        if (handle == CameraHandle(i)) {
            return &camera;
        }
        if (handle == LocalDeviceHandle(i)) {
            return &camera.localDevice;
        }
        for (std::size_t stream = 0; stream < camera.streams.size(); ++stream) {
            if (handle == StreamHandle(i, stream)) {
                return &camera.streams[stream];
            }
        }
    }
    return nullptr;
}

bool SdkState::FindCamera(PxnHandle handle, std::size_t& index) {
    for (index = 0; index < model.cameras.size(); ++index) {
        if (handle == CameraHandle(index)) {
            return true;
        }
    }
    return false;
}

bool SdkState::FindCamera(const std::string& id, std::size_t& index) {
    for (index = 0; index < model.cameras.size(); ++index) {
        if (model.cameras[index].extendedId == id || model.cameras[index].id == id) {
            return true;
        }
    }
    return false;
}

std::string SdkState::NameOf(PxnHandle handle) {
    if (handle == nullptr) {
        return "null";
    }
    const Lock lock(mutex);
    if (handle == SystemHandle()) {
        return "system";
    }
    if (handle == ChunkHandle()) {
        return "chunk";
    }
    for (std::size_t i = 0; i < model.transportLayers.size(); ++i) {
        if (handle == TransportLayerHandle(i)) {
            return "transportlayer" + std::to_string(i);
        }
    }
    for (std::size_t i = 0; i < model.interfaces.size(); ++i) {
        if (handle == InterfaceHandle(i)) {
            return "interface" + std::to_string(i);
        }
    }
    for (std::size_t i = 0; i < model.cameras.size(); ++i) {
        if (handle == CameraHandle(i)) {
            return "camera" + std::to_string(i);
        }
        if (handle == LocalDeviceHandle(i)) {
            return "localdevice" + std::to_string(i);
        }
        for (std::size_t stream = 0; stream < model.cameras[i].streams.size(); ++stream) {
            if (handle == StreamHandle(i, stream)) {
                const std::string name = "stream" + std::to_string(stream);
                return i == 0 ? name : "camera" + std::to_string(i) + "." + name;
            }
        }
    }
    char number[24];
    std::snprintf(number, sizeof(number), "0x%llX",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(handle)));
    return number;
}

const char* SdkState::Intern(const std::string& text) {
    return texts.insert(text).first->c_str();
}

void SdkState::FillCameraInfo(std::size_t index, PxnCameraInfo& info) {
    const Camera& camera = model.cameras[index];
    info = {};
    info.cameraIdString = Intern(camera.id);
    info.cameraIdExtended = Intern(camera.extendedId);
    info.cameraName = Intern(camera.name);
    info.modelName = Intern(camera.modelName);
    info.serialString = Intern(camera.serial);
    info.permittedAccess = camera.permittedAccess;
    if (camera.interface < model.interfaces.size()) {
        info.interfaceHandle = InterfaceHandle(camera.interface);
        info.transportLayerHandle =
            TransportLayerHandle(model.interfaces[camera.interface].transportLayer);
    }
    if (openCameras.count(index) != 0) {
        const std::vector<PxnHandle>& streams = streamHandles[index];
        info.localDeviceHandle = LocalDeviceHandle(index);
        info.streamHandles = streams.empty() ? nullptr : streams.data();
        info.streamCount = static_cast<std::uint32_t>(streams.size());
    }
}

void SdkState::FillFeatureInfo(const Feature& feature, PxnFeatureInfo& info) {
    info = {};
    info.name = Intern(feature.name);
    info.category = Intern(feature.category);
    info.displayName = Intern(feature.displayName);
    info.tooltip = Intern(feature.tooltip);
    info.description = Intern(feature.description);
    info.sfncNamespace = Intern(feature.sfncNamespace);
    info.unit = Intern(feature.unit);
    info.representation = Intern(feature.representation);
    info.featureDataType = feature.type;
    info.featureFlags = feature.flags;
    info.pollingTime = feature.pollingTime;
    info.visibility = feature.visibility;
    info.isStreamable = feature.isStreamable ? 1 : 0;
    info.hasSelectedFeatures = feature.selected.empty() ? 0 : 1;
}

std::uint32_t SdkState::Found(const char* entry, std::size_t found) {
    const auto scripted = model.foundAnswers.find(entry);
    if (scripted != model.foundAnswers.end() && !scripted->second.empty()) {
        const std::uint32_t answer = scripted->second.front();
        scripted->second.pop_front();
        return answer;
    }
    return static_cast<std::uint32_t>(found);
}

PxnError SdkState::ChangeStartups(int step) {
    if (startups + step < 0) {
        return PxnErrApiNotStarted;
    }
    startups += step;
    if (startups == 0) {
        openCameras.clear();
        announced.clear();
        queued.clear();
        completed.clear();
        capturing.clear();
        registrations.clear();
    }
    return PxnErrSuccess;
}

PxnError SdkState::OpenCamera(const char* id, PxnHandle* camera) {
    std::size_t index = 0;
    if (!FindCamera(id, index)) {
        return PxnErrNotFound;
    }
    if (!openCameras.insert(index).second) {
        return PxnErrInUse;
    }
    std::vector<PxnHandle>& streams = streamHandles[index];
    streams.clear();
    for (std::size_t stream = 0; stream < model.cameras[index].streams.size(); ++stream) {
        streams.push_back(StreamHandle(index, stream));
    }
    *camera = CameraHandle(index);
    return PxnErrSuccess;
}

} // namespace scripted
