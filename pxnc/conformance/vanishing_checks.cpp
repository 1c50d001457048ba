// vanishing_checks.cpp - checks of cameras that go away
#include "pxnc/conformance/calls.h"
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/feature_listener.h"
#include "pxnc/conformance/frame_set.h"
#include "pxnc/conformance/waiting.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>

namespace conformance {
namespace {

/// Searches and heartbeats take their time.
constexpr std::uint32_t kVanishMs = 30000;

/// The camera is away while the object lives.
class Absence {
public:
    Absence(Session& openSession, Findings& findings) : session(openSession) {
        const std::string id = session.CameraId();
        const PxnHandle camera = session.Camera();
        session.GetDriver().RemoveCamera();
        const bool hasVanished = WaitUntil(
            [&] {
                PxnCameraInfo info{};
                return session.Sdk().PxnCameraInfoQueryByHandle(camera, &info, sizeof info) ==
                           PxnErrBadHandle &&
                       session.Sdk().PxnCameraInfoQuery(id.c_str(), &info, sizeof info) ==
                           PxnErrNotFound;
            },
            kVanishMs);
        if (!findings.Expect(hasVanished, "the handle of a camera that has gone stays valid, or "
                                          "the camera stays known")) {
            End();
            throw CheckEnded();
        }
    }
    ~Absence() { End(); }
    Absence(const Absence&) = delete;
    Absence& operator=(const Absence&) = delete;

private:
    void End() {
        session.CloseCamera();
        session.GetDriver().ReturnCamera();
    }
    Session& session;
};

void RequireRemovableCamera(Session& session) {
    if (!session.GetDriver().CanRemoveCamera()) {
        throw NotApplicable("the camera cannot be taken away");
    }
}

void CheckVanishedHandles(Session& session, Findings& findings) {
    RequireRemovableCamera(session);
    const PxnHandle handles[] = {session.Camera(), session.LocalDevice(),
                                 session.Streams().front()};
    const std::string id = session.CameraId();
    PxnFrame frame{};
    const Absence absence(session, findings);
    for (const PxnHandle handle : handles) {
        for (const Call& call : AllCalls()) {
            // Closing comes last.
            if (call.hasHandle && std::string(call.function) != "PxnCameraClose") {
                findings.ExpectResult(PxnErrBadHandle,
                                      call.run(session.Sdk(), {handle, kNoFeature, &frame}),
                                      std::string(call.function) + " of a camera that has gone");
            }
        }
    }
    const std::vector<PxnCameraInfo> cameras = ListCameras(session.Sdk());
    findings.Expect(
        std::none_of(cameras.begin(), cameras.end(),
                     [&](const PxnCameraInfo& one) { return ToText(one.cameraIdString) == id; }),
        "a camera that has gone is listed");
    PxnHandle opened = nullptr;
    findings.ExpectResult(PxnErrNotFound,
                          session.Sdk().PxnCameraOpen(id.c_str(), PxnAccessModeFull, &opened),
                          "PxnCameraOpen of a camera that has gone");
    findings.ExpectResult(PxnErrBadHandle, session.CloseCamera(),
                          "PxnCameraClose of a camera that has gone");
    findings.ExpectResult(PxnErrBadHandle, session.Sdk().PxnCameraClose(handles[0]),
                          "a second PxnCameraClose");
}

void CheckVanishedFrames(Session& session, Findings& findings) {
    RequireRemovableCamera(session);
    session.RequireFrames(findings);
    std::atomic<bool> isOver = false;
    FrameSet frames(session, findings, 4);
    frames.Announce();
    frames.onFrame = [&](std::size_t index) {
        if (!isOver) {
            frames.Queue(index);
        }
    };
    frames.QueueAll();
    frames.Start();
    frames.RequireReturns(4);
    {
        const Absence absence(session, findings);
        isOver = true;
        findings.ExpectResult(PxnErrBadHandle, session.Sdk().PxnCaptureEnd(session.Camera()),
                              "PxnCaptureEnd of a camera that has gone");
        findings.ExpectResult(PxnErrBadHandle, frames.Flush(),
                              "PxnCaptureQueueFlush of a camera that has gone");
        const std::uint64_t returns = frames.Returns();
        for (std::size_t index = 0; index < frames.Size(); ++index) {
            frames.Renew(index);
        }
        findings.ExpectResult(PxnErrBadHandle,
                              session.Sdk().PxnFrameRevoke(session.Camera(), &frames.At(0)),
                              "PxnFrameRevoke of a camera that has gone");
        findings.ExpectResult(PxnErrBadHandle, frames.RevokeAll(),
                              "PxnFrameRevokeAll of a camera that has gone");
        frames.Forget();
        findings.ExpectResult(PxnErrBadHandle, session.CloseCamera(),
                              "PxnCameraClose of a camera that has gone");
        Pause(kQuietMs);
        findings.Expect(frames.Returns() == returns,
                        "a callback came after the frames were taken back");
        for (std::size_t index = 0; index < frames.Size(); ++index) {
            findings.Expect(frames.IsUntouched(index),
                            "a frame was written after it was taken back");
        }
    }
    session.Prepare(Stage::kOpened);
    findings.Expect(!ListFeatures(session.Sdk(), session.Camera()).empty(),
                    "a camera that came back has no features");
}

void CheckVanishedWait(Session& session, Findings& findings) {
    RequireRemovableCamera(session);
    FrameSet frames(session, findings, 1);
    frames.Announce();
    frames.StartCapture();
    findings.RequireSuccess(frames.QueueForWait(0), "PxnCaptureFrameQueue");
    PxnError result = PxnErrSuccess;
    {
        const PxnHandle camera = session.Camera();
        const std::jthread waiting(
            [&] { result = session.Sdk().PxnCaptureFrameWait(camera, &frames.At(0), kVanishMs); });
        Pause(kQuietMs);
        const Absence absence(session, findings);
        frames.Forget();
    }
    findings.Expect(result == PxnErrNotAvailable || result == PxnErrTimeout,
                    "a wait for a frame of a camera that has gone returned " +
                        std::to_string(result) + ", neither -30 nor -12");
}

void CheckVanishedRegistrations(Session& session, Findings& findings) {
    RequireRemovableCamera(session);
    const SdkFunctions& sdk = session.Sdk();
    const PxnHandle camera = session.Camera();
    const std::vector<PxnFeatureInfo> features = ListFeatures(sdk, camera);
    findings.Require(!features.empty(), "the camera has no features");
    const std::string feature = ToText(features.front().name);
    FeatureListener::Record record;
    FeatureListener listener(record);
    findings.RequireSuccess(sdk.PxnFeatureInvalidationRegister(
                                camera, feature.c_str(), FeatureListener::OnChange, &listener),
                            "PxnFeatureInvalidationRegister");
    const Absence absence(session, findings);
    findings.ExpectResult(
        PxnErrBadHandle,
        sdk.PxnFeatureInvalidationUnregister(camera, feature.c_str(), FeatureListener::OnChange),
        "PxnFeatureInvalidationUnregister of a camera that has gone");
    findings.ExpectResult(PxnErrBadHandle, session.CloseCamera(),
                          "PxnCameraClose of a camera that has gone");
}

} // namespace

std::vector<Check> VanishingChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"vanishing", name, Stage::kOpened, Scope::kThorough, run};
    };
    return {
        check("handles of a camera that has gone", CheckVanishedHandles),
        check("frames of a camera that has gone", CheckVanishedFrames),
        check("waits for a camera that has gone", CheckVanishedWait),
        check("registrations of a camera that has gone", CheckVanishedRegistrations),
    };
}

} // namespace conformance
