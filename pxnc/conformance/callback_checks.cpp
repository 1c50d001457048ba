// callback_checks.cpp - checks of what a frame callback may call
#include "pxnc/conformance/calls.h"
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/frame_set.h"
#include "pxnc/conformance/waiting.h"

#include <atomic>
#include <string>

namespace conformance {
namespace {

constexpr const char* kRefusedCalls[] = {
    "PxnCameraClose", "PxnFrameRevoke",      "PxnFrameRevokeAll",   "PxnCaptureStart",
    "PxnCaptureEnd",  "PxnCaptureFrameWait", "PxnCaptureQueueFlush"};

/// Runs `use(frames)` in the first of some frame callbacks. The last frame of `frames` is announced
/// and not queued.
template <typename Use>
void UseInCallback(Session& session, Findings& findings, Use use) {
    session.RequireFrames(findings);
    std::atomic<bool> isUsed = false;
    FrameSet frames(session, findings, 3);
    frames.Announce();
    frames.onFrame = [&](std::size_t) {
        if (!isUsed.exchange(true)) {
            use(frames);
        }
    };
    for (const std::size_t index : {0u, 1u}) {
        findings.RequireSuccess(frames.Queue(index), "PxnCaptureFrameQueue");
    }
    frames.Start();
    frames.RequireReturns(2);
}

void CheckRefusedInside(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    const std::string id = session.CameraId();
    const PxnHandle camera = session.Camera();
    UseInCallback(session, findings, [&](FrameSet& frames) {
        for (const char* function : kRefusedCalls) {
            findings.ExpectResult(PxnErrInvalidCall,
                                  FindCall(function).run(sdk, {camera, kNoFeature, &frames.At(2)}),
                                  std::string(function) + " inside a frame callback");
        }
        PxnHandle opened = nullptr;
        findings.ExpectResult(PxnErrInvalidCall,
                              sdk.PxnCameraOpen(id.c_str(), PxnAccessModeRead, &opened),
                              "PxnCameraOpen inside a frame callback");
    });
    findings.Expect(!ListFeatures(sdk, camera).empty(), "the camera does not work afterwards");
}

void CheckAllowedInside(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    const PxnHandle camera = session.Camera();
    UseInCallback(session, findings, [&](FrameSet& frames) {
        std::uint32_t found = 0;
        findings.ExpectSuccess(frames.Announce(2), "PxnFrameAnnounce inside a frame callback");
        findings.ExpectSuccess(frames.Queue(2), "PxnCaptureFrameQueue inside a frame callback");
        findings.ExpectSuccess(sdk.PxnPayloadSizeGet(camera, &found),
                               "PxnPayloadSizeGet inside a frame callback");
        findings.ExpectSuccess(
            sdk.PxnFeaturesList(camera, nullptr, 0, &found, sizeof(PxnFeatureInfo)),
            "PxnFeaturesList inside a frame callback");
        findings.ExpectSuccess(sdk.PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)),
                               "PxnCamerasList inside a frame callback");
    });
}

void CheckStartupInFrameCallback(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    const wchar_t* const path = session.ConfigPath();
    UseInCallback(session, findings, [&](FrameSet&) {
        findings.ExpectResult(PxnErrInvalidCall, sdk.PxnStartup(path),
                              "PxnStartup inside a frame callback");
        sdk.PxnShutdown();
    });
    findings.Require(!ListFeatures(sdk, session.Camera()).empty(),
                     "PxnShutdown inside a frame callback stopped the library");
    session.Stop();
    std::uint32_t found = 0;
    findings.ExpectResult(PxnErrApiNotStarted,
                          sdk.PxnCamerasList(nullptr, 0, &found, sizeof(PxnCameraInfo)),
                          "PxnCamerasList after the last shutdown");
}

} // namespace

std::vector<Check> CallbackChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"callbacks", name, Stage::kOpened, Scope::kHarmless, run};
    };
    return {
        check("what would wait is refused", CheckRefusedInside),
        check("the rest is allowed", CheckAllowedInside),
        check("startup and shutdown", CheckStartupInFrameCallback),
    };
}

} // namespace conformance
