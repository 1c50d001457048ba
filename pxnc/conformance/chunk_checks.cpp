// chunk_checks.cpp - checks of access to the chunks of frames
#include "pxnc/conformance/calls.h"
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/feature_values.h"
#include "pxnc/conformance/frame_set.h"

#include <functional>
#include <string>

namespace conformance {
namespace {

using ChunkUse = std::function<PxnError(PxnHandle)>;

PxnError PXN_CALL UseChunks(PxnHandle chunks, void* context) {
    return (*static_cast<ChunkUse*>(context))(chunks);
}

PxnError AccessChunks(Session& session, const PxnFrame& frame, ChunkUse use) {
    return session.Sdk().PxnChunkDataAccess(&frame, UseChunks, &use);
}

PxnError RefuseChunks(Session& session, Findings& findings, const PxnFrame& frame) {
    return AccessChunks(session, frame, [&](PxnHandle) {
        findings.Expect(false, "the callback was called");
        return PxnErrSuccess;
    });
}

void CheckNoChunks(Session& session, Findings& findings) {
    FrameSet frames(session, findings, 1);
    findings.ExpectResult(PxnErrNotFound, RefuseChunks(session, findings, frames.At(0)),
                          "PxnChunkDataAccess of a frame that is not announced");
    frames.Announce();
    findings.ExpectResult(PxnErrNoData, RefuseChunks(session, findings, frames.At(0)),
                          "PxnChunkDataAccess of a frame that was never queued");
    findings.RequireSuccess(frames.Queue(0), "PxnCaptureFrameQueue");
    findings.ExpectResult(PxnErrNoData, RefuseChunks(session, findings, frames.At(0)),
                          "PxnChunkDataAccess of a queued frame");
}

/// Receives one frame.
void Receive(FrameSet& frames) {
    frames.Announce();
    frames.QueueAll();
    frames.Start();
    frames.RequireReturns(frames.Size());
    frames.StopCamera();
    frames.EndCapture();
}

void CheckFrameWithoutChunks(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    FrameSet frames(session, findings, 1);
    Receive(frames);
    const bool isFilled = (frames.At(0).receiveFlags & PxnFrameFlagChunkData) != 0;
    if (isFilled && frames.At(0).chunkDataPresent != 0) {
        throw NotApplicable("the camera sends chunks");
    }
    findings.ExpectResult(PxnErrNoChunkData, RefuseChunks(session, findings, frames.At(0)),
                          "PxnChunkDataAccess of a frame without chunks");
}

/// Switches the camera's chunks on while it lives.
class ChunkMode {
public:
    explicit ChunkMode(Session& openSession) : session(openSession) {
        if (!Set(true)) {
            throw NotApplicable("the camera has no chunks to switch on");
        }
    }
    ~ChunkMode() { Set(false); }
    ChunkMode(const ChunkMode&) = delete;
    ChunkMode& operator=(const ChunkMode&) = delete;

private:
    bool Set(bool isOn) {
        return session.Sdk().PxnFeatureBoolSet(session.Camera(), "ChunkModeActive", isOn ? 1 : 0) ==
               PxnErrSuccess;
    }
    Session& session;
};

void CheckChunkFeatures(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    const SdkFunctions& sdk = session.Sdk();
    const ChunkMode mode(session);
    FrameSet frames(session, findings, 1);
    Receive(frames);
    findings.Require(frames.At(0).chunkDataPresent == 1, "the frame has no chunks");
    PxnHandle kept = nullptr;
    constexpr PxnError kResult = PxnErrOther;
    const PxnError result = AccessChunks(session, frames.At(0), [&](PxnHandle chunks) {
        kept = chunks;
        const std::vector<PxnFeatureInfo> features = ListFeatures(sdk, chunks);
        findings.Expect(!features.empty(), "the chunks have no features");
        for (const PxnFeatureInfo& info : features) {
            const NamedFeature feature{"chunk/" + ToText(info.name), chunks, info};
            if (HasValue(feature) && GetAccess(sdk, feature).isReadable) {
                findings.ExpectSuccess(ReadValue(sdk, feature), "reading " + feature.name);
            }
        }
        return kResult;
    });
    findings.ExpectResult(kResult, result, "PxnChunkDataAccess, whose callback returned that");
    std::uint32_t found = 0;
    findings.ExpectResult(PxnErrBadHandle,
                          sdk.PxnFeaturesList(kept, nullptr, 0, &found, sizeof(PxnFeatureInfo)),
                          "PxnFeaturesList of chunks after the callback");
}

void CheckInsideChunkCallback(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    const SdkFunctions& sdk = session.Sdk();
    const ChunkMode mode(session);
    FrameSet frames(session, findings, 2);
    Receive(frames);
    const PxnError result = AccessChunks(session, frames.At(0), [&](PxnHandle) {
        for (const char* function :
             {"PxnCameraClose", "PxnFrameRevoke", "PxnFrameRevokeAll", "PxnCaptureStart",
              "PxnCaptureEnd", "PxnCaptureFrameWait", "PxnCaptureQueueFlush"}) {
            findings.ExpectResult(
                PxnErrInvalidCall,
                FindCall(function).run(sdk, {session.Camera(), kNoFeature, &frames.At(1)}),
                std::string(function) + " inside a chunk callback");
        }
        findings.ExpectResult(PxnErrInvalidCall, sdk.PxnStartup(session.ConfigPath()),
                              "PxnStartup inside a chunk callback");
        sdk.PxnShutdown();
        findings.ExpectSuccess(frames.Queue(1), "PxnCaptureFrameQueue inside a chunk callback");
        return PxnErrSuccess;
    });
    findings.ExpectSuccess(result, "PxnChunkDataAccess");
}

} // namespace

std::vector<Check> ChunkChecks() {
    return {
        {"chunks", "frames that have not come back", Stage::kOpened, Scope::kHarmless,
         CheckNoChunks},
        {"chunks", "a frame without chunks", Stage::kOpened, Scope::kHarmless,
         CheckFrameWithoutChunks},
        {"chunks", "a frame with chunks", Stage::kOpened, Scope::kThorough, CheckChunkFeatures},
        {"chunks", "what a chunk callback may call", Stage::kOpened, Scope::kThorough,
         CheckInsideChunkCallback},
    };
}

} // namespace conformance
