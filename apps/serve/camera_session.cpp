// camera_session.cpp - the camera that is served
#include "apps/serve/camera_session.h"

#include "apps/common/command_failure.h"
#include "apps/common/format_handling.h"
#include "apps/common/grabber_maker.h"
#include "apps/common/no_frame_cause.h"
#include "apps/common/service_client.h"
#include "apps/serve/request_failure.h"
#include "mivora/grabber.h"
#include "platform/clock.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::uint64_t kServedBuffers = 16;
constexpr std::uint64_t kSnapTimeoutMs = 5000;
constexpr std::uint64_t kListEveryNs = 1000000000;
constexpr std::uint64_t kTelemetryEveryNs = 1000000000;
constexpr std::size_t kMostChangesAtATime = 64;
constexpr std::size_t kMostWritten = 1000;

bool HasCamera(const std::vector<KnownCamera>& cameras, std::uint32_t uniqueId) {
    return std::any_of(cameras.begin(), cameras.end(), [uniqueId](const KnownCamera& camera) {
        return camera.uniqueId == uniqueId;
    });
}

} // namespace

CameraSession::CameraSession(const AppOptions& options, IGrabberMaker& grabberMaker,
                             const std::vector<std::string>& set, const Parts& parts)
    : maker(grabberMaker),
      board(parts.board),
      frames(parts.frames),
      listener(parts.listener),
      session(options, grabberMaker),
      lister((session.Init(), grabberMaker)),
      assignments(ParseFeatureAssignments(session, set)) {
    std::string answer;
    bool hasControl = true;
    try {
        hasControl = session.Sdk().Run("status", answer) == 0;
    } catch (const CommandFailure&) {
        hasControl = false;
    }
    board.Change([&](ServeState& state) { state.hasSimulatorControl = hasControl; });
    ListCameras();
}

CameraSession::~CameraSession() {
    StopGrabbing("the program ended");
    if (recording) {
        recording->Close();
    }
}

void CameraSession::RequireOpen() const {
    if (!isOpen) {
        throw RequestFailure(kConflict, isGone ? "the camera is not there at present"
                                               : "no camera is open; open one first");
    }
}

ServiceClient& CameraSession::Services() {
    RequireOpen();
    return session.Services();
}

void CameraSession::Open(const std::string& wanted) {
    Close();
    session.Check("RefreshCameraList", session.Grabber().RefreshCameraList());
    session.SelectCamera(wanted);
    OpenActive();
}

void CameraSession::OpenActive() {
    followed.Clear();
    session.OpenActCamera();
    isOpen = true;
    isGone = false;
    CMivoraCamera* const camera = session.Grabber().GetActCamera();
    uniqueId = camera->GetCameraUniqueID();
    knownChanges = session.Events().ConfigurationChanges();
    grab.emplace(session, kServedBuffers);
    std::string reason;
    if (IMivoraModuleServices* const offered = maker.Services(&session.Grabber(), reason)) {
        changes.Follow(session.Services(), *offered);
    }
    ApplyFeatureAssignments(session, assignments);
    std::optional<KnownCamera> known;
    for (const KnownCamera& entry : session.KnownCameras()) {
        if (entry.uniqueId == uniqueId) {
            known = entry;
        }
    }
    board.Change([&](ServeState& state) {
        state.camera = known;
        state.isOpen = true;
        state.isGone = false;
        state.account = FrameAccount();
        state.timing.reset();
        state.rate = 0;
    });
    ReadImage();
    ListCameras();
}

void CameraSession::ReadImage() {
    if (!isOpen) {
        return;
    }
    std::optional<ImageLayout> layout;
    try {
        layout = DescribeImage(session.CheckedMode());
    } catch (const CommandFailure&) {
        layout.reset(); // a format that the module does not know
    }
    const std::optional<ServiceValue> format = ReadPixelFormat(session.OptionalServices());
    board.Change([&](ServeState& state) {
        state.image = layout;
        state.pixelFormat = format ? format->text : "";
    });
}

void CameraSession::Close() {
    StopGrabbing("the camera was closed");
    isToGrab = false;
    isGone = false;
    written.clear();
    grab.reset();
    changes.Forget();
    if (isOpen) {
        session.Grabber().CloseActCamera();
        isOpen = false;
    }
    frames.Clear();
    board.Change([](ServeState& state) {
        state.camera.reset();
        state.isOpen = false;
        state.isGone = false;
        state.image.reset();
        state.pixelFormat.clear();
        state.temperatureC.reset();
    });
    ListCameras();
}

void CameraSession::Start() {
    RequireOpen();
    isToGrab = true;
    if (!IsGrabbing()) {
        StartGrabbing();
    }
}

void CameraSession::StartGrabbing() {
    ReadImage();
    grab->Start();
    taker.emplace(session, *grab, frames, board);
    taker->Start();
    board.Change([](ServeState& state) { state.isGrabbing = true; });
}

void CameraSession::Stop() {
    isToGrab = false;
    StopGrabbing("the acquisition was stopped");
}

void CameraSession::StopGrabbing(const std::string& why) {
    if (!IsGrabbing()) {
        return;
    }
    taker.reset();
    grab->Stop();
    if (recording) {
        std::vector<FrameGap> rest;
        if (!recording->HasAll()) {
            grab->TakeRest(rest);
        }
        recording->AddRest(rest);
        recording->EndEarly(why);
    }
    const FrameAccount account = grab->Account();
    std::shared_ptr<const FrameTiming> timing = std::make_shared<FrameTiming>(grab->Timing());
    board.Change([&](ServeState& state) {
        state.isGrabbing = false;
        state.account = account;
        state.waitingFrames = 0;
        state.rate = 0;
        state.timing.swap(timing);
    });
}

void CameraSession::ChangeStopped(const std::function<void()>& change) {
    RequireOpen();
    if (recording) {
        throw RequestFailure(kConflict,
                             "a recording is being made, which would end; stop it first");
    }
    StopGrabbing("a feature was changed");
    try {
        change();
    } catch (...) {
        if (isToGrab) {
            StartGrabbing();
        }
        throw;
    }
    if (isToGrab) {
        StartGrabbing();
    }
}

void CameraSession::NoteWritten(const std::string& module, const std::string& feature,
                                const std::string& value) {
    const FeatureName name{module, feature, {}};
    // A slider writes many values.
    if (!written.empty() && written.back().name.Text() == name.Text()) {
        written.back().value = value;
        return;
    }
    if (written.size() == kMostWritten) {
        written.erase(written.begin());
    }
    written.push_back({name, value});
}

/// What a camera that is back does not take is left as the camera has it.
void CameraSession::WriteAgain() {
    for (const FeatureAssignment& assignment : written) {
        try {
            ApplyFeatureAssignments(session, {assignment});
        } catch (const CommandFailure&) {
            continue; // the log says why
        }
    }
    ReadImage();
}

std::vector<FeatureChanges::Name> CameraSession::FollowersOf(const std::string& module,
                                                             const std::string& feature) const {
    return followed.FollowersOf(module, feature);
}

FramePointer CameraSession::Snap() {
    RequireOpen();
    ReadImage();
    grab->Start();
    std::vector<std::uint8_t> pixels = frames.TakeBuffer();
    const FrameResult result = grab->TakeFrame(kSnapTimeoutMs, &pixels);
    NoFrameCause cause;
    if (result == FrameResult::kNone) {
        NoFrameFacts facts;
        facts.waitedMs = kSnapTimeoutMs;
        facts.incomplete = grab->ReceiveErrors();
        cause = FindNoFrameCause(session.OptionalServices(), facts);
    }
    const ImageLayout layout = grab->Layout();
    grab->Stop();
    const FrameAccount account = grab->Account();
    board.Change([&](ServeState& state) { state.account = account; });
    if (result != FrameResult::kTaken) {
        throw RequestFailure(kNoFrameInTime, "no frame came for 5 seconds: " + cause.text);
    }
    frames.Publish(layout, std::move(pixels), platform::MonotonicNanoseconds());
    return frames.Newest();
}

void CameraSession::StartRecording(const RecordingWish& wish) {
    RequireOpen();
    if (recording) {
        throw RequestFailure(kConflict, "a recording is being made; stop it first");
    }
    const bool isRunning = IsGrabbing();
    // The camera's clock is read, and the directory made, before frames count.
    recording = std::make_shared<RunningRecording>(session, wish);
    board.Change([&](ServeState& state) { state.recording = recording->State(); });
    if (!isRunning) {
        try {
            Start();
        } catch (...) {
            recording->EndEarly("the acquisition could not be started");
            FinishRecording();
            throw;
        }
    }
    taker->Record(recording);
}

void CameraSession::StopRecording() {
    if (!recording) {
        throw RequestFailure(kConflict, "nothing is being recorded");
    }
    if (taker) {
        taker->StopRecording();
    }
    recording->EndEarly("stopped");
    FinishRecording();
}

void CameraSession::FinishRecording() {
    if (!recording) {
        return;
    }
    const bool isClosed = recording->HasAll() && recording->TryClose();
    const RecordingState present = isClosed ? recording->Outcome() : recording->State();
    board.Change([&](ServeState& state) { state.recording = present; });
    if (isClosed) {
        recording.reset();
    }
}

void CameraSession::Poll(bool isListWanted) {
    const std::uint64_t now = platform::MonotonicNanoseconds();
    const std::uint64_t present = session.Events().ConfigurationChanges();
    const bool isDue = now - lastListing >= kListEveryNs;
    if (present != knownChanges || (isDue && (isListWanted || isGone))) {
        knownChanges = present;
        LookForCamera();
    }
    if (taker && !taker->Failure().empty()) {
        StopGrabbing(taker->Failure());
    }
    FinishRecording();
    ReportChanges();
    if (isOpen && now - lastTelemetry >= kTelemetryEveryNs) {
        lastTelemetry = now;
        ReadTelemetry();
    }
}

void CameraSession::LookForCamera() {
    ListCameras();
    const bool isThere = HasCamera(cameras, uniqueId);
    if (isOpen && !isThere) {
        LoseCamera();
    } else if (isGone && isThere && OpenAgain()) {
        WriteAgain();
        if (!isToGrab) {
            return;
        }
        try {
            StartGrabbing();
        } catch (const CommandFailure&) {
            isToGrab = false; // the log says why
        }
    }
}

void CameraSession::LoseCamera() {
    StopGrabbing("the camera has gone");
    grab.reset();
    changes.Forget();
    session.Grabber().CloseActCamera();
    isOpen = false;
    isGone = true;
    board.Change([](ServeState& state) {
        state.isOpen = false;
        state.isGone = true;
    });
}

bool CameraSession::OpenAgain() {
    CMivoraGrabber& grabber = session.Grabber();
    session.Check("RefreshCameraList", grabber.RefreshCameraList());
    const std::int32_t index = grabber.GetCameraIndexByCameraUniqueID(uniqueId);
    if (index < 0 || grabber.SetActCameraIndex(index) != MV_OK) {
        return false;
    }
    try {
        OpenActive();
        return true;
    } catch (const CommandFailure&) {
        return false; // somebody else may have it still; the next look tries again
    }
}

void CameraSession::ListCameras() {
    lastListing = platform::MonotonicNanoseconds();
    std::vector<KnownCamera> present;
    try {
        present = lister.List();
    } catch (const CommandFailure&) {
        return; // the log says why; the list stays as it was
    }
    if (!(present == cameras)) {
        cameras = present;
        board.ChangeCameras(std::move(present));
    }
}

void CameraSession::ReportChanges() {
    bool isImageChanged = false;
    for (const auto& [module, name] : changes.Take(kMostChangesAtATime)) {
        ServiceClient* const services = isOpen ? session.OptionalServices() : nullptr;
        const std::optional<FeatureDescription> feature =
            services ? services->TryDescribeFeature(module, name) : std::nullopt;
        if (!feature) {
            continue;
        }
        isImageChanged = isImageChanged || name == "Width" || name == "Height" ||
                         name == "PixelFormat" || name == "PayloadSize";
        listener.OnFeatureChanged(
            *feature, feature->isReadable ? services->TryReadFeature(module, name) : std::nullopt);
    }
    if (isImageChanged && !IsGrabbing()) {
        ReadImage();
    }
}

void CameraSession::ReadTelemetry() {
    ServiceClient* const services = session.OptionalServices();
    const PacketStatistics packets = ReadPacketStatistics(services);
    const std::optional<ServiceValue> temperature =
        services ? services->TryReadFeature("Camera", "DeviceTemperature") : std::nullopt;
    board.Change([&](ServeState& state) {
        state.packets = packets;
        state.temperatureC = temperature ? std::optional(temperature->real) : std::nullopt;
    });
}
