// session.cpp - the started library and the open camera that checks work with
#include "pxnc/conformance/session.h"

#include "platform/text.h"
#include "pxnc/conformance/acquisition.h"
#include "pxnc/conformance/feature_values.h"
#include "pxnc/conformance/frame_set.h"
#include "pxnc/conformance/waiting.h"

#include <cstring>
#include <stdexcept>
#include <utility>

namespace conformance {
namespace {

constexpr std::uint32_t kFirstFrameMs = 5000;

bool HasId(const PxnCameraInfo& info, const std::string& id) {
    return ToText(info.cameraIdString) == id || ToText(info.cameraIdExtended) == id;
}

bool PermitsFullAccess(const PxnCameraInfo& info) {
    return (info.permittedAccess & (PxnAccessModeFull | PxnAccessModeUnknown)) != 0;
}

/// The camera is somebody else's, which is no fault of the SDK.
bool IsTaken(PxnError result) {
    return result == PxnErrInvalidAccess || result == PxnErrInUse || result == PxnErrBusy;
}

} // namespace

Session::Session(const SdkFunctions& functions, Driver& cameraDriver, SessionOptions sessionOptions)
    : sdk(functions), driver(cameraDriver), options(std::move(sessionOptions)) {}

Session::~Session() {
    Stop();
}

const wchar_t* Session::ConfigPath() const {
    return options.configPath.empty() ? nullptr : options.configPath.c_str();
}

void Session::Prepare(Stage stage) {
    if (stage == Stage::kStopped) {
        Stop();
        return;
    }
    Start();
    if (stage == Stage::kOpened) {
        Open();
    } else {
        CloseCamera();
    }
}

void Session::Start() {
    if (!isStarted) {
        isStarted = true; // a failure counts
        if (const PxnError failed = sdk.PxnStartup(ConfigPath())) {
            Stop();
            throw std::runtime_error("PxnStartup returned " + std::to_string(failed));
        }
    }
}

void Session::Stop() {
    CloseCamera();
    if (std::exchange(isStarted, false)) {
        sdk.PxnShutdown();
    }
}

void Session::StopForGood() {
    constexpr unsigned kMost = 16;
    Stop();
    std::uint32_t found = 0;
    for (unsigned tries = 0;
         tries < kMost &&
         sdk.PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)) != PxnErrApiNotStarted;
         ++tries) {
        sdk.PxnShutdown();
    }
}

void Session::Open() {
    if (camera) {
        return;
    }
    const std::string id = CameraId();
    PxnHandle opened = nullptr;
    const PxnError result = sdk.PxnCameraOpen(id.c_str(), PxnAccessModeFull, &opened);
    if (IsTaken(result)) {
        throw NotApplicable("camera " + id + " cannot be opened with full access now (" +
                            std::to_string(result) + ")");
    }
    if (result != PxnErrSuccess) {
        throw std::runtime_error("PxnCameraOpen returned " + std::to_string(result));
    }
    camera = opened;
    if (const PxnError failed = sdk.PxnCameraInfoQueryByHandle(camera, &info, sizeof info)) {
        throw std::runtime_error("PxnCameraInfoQueryByHandle returned " + std::to_string(failed));
    }
    if (!info.streamHandles || info.streamCount == 0) {
        throw std::runtime_error("the open camera has no streams");
    }
}

PxnError Session::CloseCamera() {
    const PxnHandle closed = camera;
    ForgetCamera();
    return closed ? sdk.PxnCameraClose(closed) : PxnError{PxnErrSuccess};
}

void Session::ForgetCamera() {
    camera = nullptr;
    info = {};
}

bool Session::FindCamera(PxnCameraInfo& found) const {
    bool isFound = false;
    for (const PxnCameraInfo& one : ListCameras(sdk)) {
        const bool suits =
            options.cameraId.empty() ? PermitsFullAccess(one) : HasId(one, options.cameraId);
        if (suits && !isFound) {
            found = one;
            isFound = true;
        }
    }
    return isFound;
}

std::string Session::CameraId() {
    PxnCameraInfo found{};
    if (!WaitUntil([&] { return FindCamera(found); }, options.cameraWaitMs)) {
        throw NotApplicable(options.cameraId.empty() ? "no camera that can be opened is present"
                                                     : "there is no camera " + options.cameraId);
    }
    options.cameraId = ToText(found.cameraIdString);
    return options.cameraId;
}

std::vector<PxnHandle> Session::Streams() const {
    return {info.streamHandles, info.streamHandles + info.streamCount};
}

std::vector<NamedModule> Session::Modules() const {
    std::vector<NamedModule> modules{{"system", PXN_SYSTEM_HANDLE}};
    const auto layers = ListRecords<PxnTransportLayerInfo>([&](auto... arguments) {
        return sdk.PxnTransportLayersList(arguments..., sizeof(PxnTransportLayerInfo));
    });
    for (const PxnTransportLayerInfo& layer : layers) {
        modules.push_back({"transport layer " + ToText(layer.transportLayerIdString),
                           layer.transportLayerHandle});
    }
    const auto interfaces = ListRecords<PxnInterfaceInfo>([&](auto... arguments) {
        return sdk.PxnInterfacesList(arguments..., sizeof(PxnInterfaceInfo));
    });
    for (const PxnInterfaceInfo& one : interfaces) {
        modules.push_back({"interface " + ToText(one.interfaceIdString), one.interfaceHandle});
    }
    if (camera) {
        modules.push_back({"camera", camera});
        modules.push_back({"local device", info.localDeviceHandle});
        for (const PxnHandle stream : Streams()) {
            modules.push_back({"stream", stream});
        }
    }
    return modules;
}

std::vector<NamedFeature> Session::Features() const {
    std::vector<NamedFeature> features;
    for (const auto& [name, handle] : Modules()) {
        for (const PxnFeatureInfo& feature : ListFeatures(sdk, handle)) {
            features.push_back({name + "/" + ToText(feature.name), handle, feature});
        }
    }
    return features;
}

std::vector<NamedFeature> Session::RequireFeatures(std::uint32_t type) const {
    std::vector<NamedFeature> features = Features();
    std::erase_if(features, [type](const NamedFeature& feature) {
        return feature.info.featureDataType != type;
    });
    if (features.empty()) {
        throw NotApplicable("no module has a feature of this type");
    }
    return features;
}

void Session::RequireFrames(Findings& findings) {
    if (!doFramesCome) {
        FrameSet frames(*this, findings, 2);
        frames.Announce();
        frames.QueueAll();
        frames.Start();
        doFramesCome = frames.WaitForReturns(1, kFirstFrameMs);
    }
    if (!*doFramesCome) {
        throw NotApplicable("the camera sends no frames within " +
                            std::to_string(kFirstFrameMs / 1000) + " s");
    }
}

const std::string& Session::LockedFeature() {
    if (!lockedFeature) {
        lockedFeature = "";
        std::vector<NamedFeature> writable;
        for (const PxnFeatureInfo& feature : ListFeatures(sdk, camera)) {
            const NamedFeature named{ToText(feature.name), camera, feature};
            if (HasValue(named) && GetAccess(sdk, named).isWritable) {
                writable.push_back(named);
            }
        }
        const Acquisition acquisition(*this);
        for (const NamedFeature& feature : writable) {
            if (!GetAccess(sdk, feature).isWritable) {
                lockedFeature = feature.name;
                break;
            }
        }
    }
    return *lockedFeature;
}

std::wstring ToWide(const std::string& path) {
    std::wstring wide(path.size() + 1, L'\0');
    const std::size_t length = platform::NarrowToWide(path.c_str(), wide.data(), wide.size());
    wide.resize(length == 0 ? 0 : length - 1);
    return wide;
}

std::vector<PxnCameraInfo> ListCameras(const SdkFunctions& sdk) {
    return ListRecords<PxnCameraInfo>(
        [&](auto... arguments) { return sdk.PxnCamerasList(arguments..., sizeof(PxnCameraInfo)); });
}

std::vector<PxnFeatureInfo> ListFeatures(const SdkFunctions& sdk, PxnHandle handle) {
    return ListRecords<PxnFeatureInfo>([&](auto... arguments) {
        return sdk.PxnFeaturesList(handle, arguments..., sizeof(PxnFeatureInfo));
    });
}

std::vector<const char*> ListEnumEntries(const SdkFunctions& sdk, PxnHandle handle,
                                         const char* name) {
    return ListRecords<const char*>([&](auto... arguments) {
        return sdk.PxnFeatureEnumRangeQuery(handle, name, arguments...);
    });
}

} // namespace conformance
