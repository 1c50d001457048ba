// queue_checks.cpp - checks of the rules for frames of a camera that sends none
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/frame_set.h"
#include "pxnc/conformance/waiting.h"

#include <atomic>
#include <string>
#include <thread>

namespace conformance {
namespace {

constexpr std::uint32_t kNoLimit = 0xFFFFFFFF;

PxnError Wait(Session& session, FrameSet& frames, std::size_t index, std::uint32_t timeoutMs) {
    return session.Sdk().PxnCaptureFrameWait(session.Camera(), &frames.At(index), timeoutMs);
}

PxnError Revoke(Session& session, FrameSet& frames, std::size_t index) {
    return session.Sdk().PxnFrameRevoke(session.Camera(), &frames.At(index));
}

void CheckPayloadSizes(Session& session, Findings& findings) {
    std::uint32_t ofCamera = 0;
    std::uint32_t ofStream = 0;
    findings.RequireSuccess(session.Sdk().PxnPayloadSizeGet(session.Camera(), &ofCamera),
                            "PxnPayloadSizeGet of the camera");
    findings.RequireSuccess(session.Sdk().PxnPayloadSizeGet(session.Streams().front(), &ofStream),
                            "PxnPayloadSizeGet of the stream");
    findings.Expect(ofCamera == ofStream, "camera and first stream have other payload sizes: " +
                                              std::to_string(ofCamera) + " and " +
                                              std::to_string(ofStream));
    findings.Expect(ofCamera > 0, "the payload has no bytes");
}

void CheckNotAnnounced(Session& session, Findings& findings) {
    FrameSet frames(session, findings, 1);
    findings.ExpectResult(PxnErrNotFound, frames.Queue(0), "PxnCaptureFrameQueue");
    findings.ExpectResult(PxnErrNotFound, Revoke(session, frames, 0), "PxnFrameRevoke");
    findings.ExpectResult(PxnErrNotFound, Wait(session, frames, 0, 0), "PxnCaptureFrameWait");
}

void CheckQueued(Session& session, Findings& findings) {
    FrameSet frames(session, findings, 2);
    frames.Announce();
    frames.QueueAll();
    findings.ExpectResult(PxnErrAlready, frames.Queue(0), "PxnCaptureFrameQueue of a queued frame");
    findings.ExpectResult(PxnErrInUse, Revoke(session, frames, 0),
                          "PxnFrameRevoke of a queued frame");
    findings.ExpectSuccess(frames.Flush(), "PxnCaptureQueueFlush");
    findings.ExpectSuccess(frames.Queue(0), "PxnCaptureFrameQueue of a flushed frame");
    findings.ExpectSuccess(frames.Flush(), "PxnCaptureQueueFlush");
    findings.ExpectSuccess(Revoke(session, frames, 0), "PxnFrameRevoke of a flushed frame");
    findings.ExpectResult(PxnErrNotFound, Revoke(session, frames, 0),
                          "PxnFrameRevoke of a revoked frame");
    findings.ExpectResult(PxnErrNotFound, frames.Queue(0),
                          "PxnCaptureFrameQueue of a revoked frame");
    findings.Expect(frames.IsUntouched(0) && frames.IsUntouched(1),
                    "a frame was written that no camera sent");
}

void CheckRevokeAll(Session& session, Findings& findings) {
    FrameSet frames(session, findings, 3);
    frames.Announce();
    findings.RequireSuccess(frames.Queue(0), "PxnCaptureFrameQueue");
    findings.ExpectSuccess(frames.RevokeAll(), "PxnFrameRevokeAll");
    for (std::size_t index = 0; index < frames.Size(); ++index) {
        findings.ExpectResult(PxnErrNotFound, Revoke(session, frames, index),
                              "PxnFrameRevoke after PxnFrameRevokeAll");
    }
    frames.Announce();
    frames.QueueAll();
    findings.ExpectSuccess(frames.RevokeAll(), "a second PxnFrameRevokeAll");
    findings.ExpectSuccess(frames.RevokeAll(), "PxnFrameRevokeAll without frames");
}

void CheckAnnouncingAgain(Session& session, Findings& findings) {
    FrameSet frames(session, findings, 1);
    frames.Announce();
    findings.ExpectSuccess(frames.Announce(0), "PxnFrameAnnounce of an announced frame");
    findings.RequireSuccess(frames.Queue(0), "PxnCaptureFrameQueue");
    findings.ExpectSuccess(frames.Announce(0), "PxnFrameAnnounce of a queued frame");
    findings.ExpectResult(PxnErrAlready, frames.Queue(0),
                          "PxnCaptureFrameQueue of a queued frame that was updated");
    findings.ExpectSuccess(frames.Flush(), "PxnCaptureQueueFlush");
    findings.ExpectSuccess(Revoke(session, frames, 0), "PxnFrameRevoke");
    findings.ExpectResult(PxnErrNotFound, Revoke(session, frames, 0),
                          "PxnFrameRevoke of a frame that was announced twice and revoked");
}

void CheckStreamHandle(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    const PxnHandle stream = session.Streams().front();
    FrameSet frames(session, findings, 1);
    frames.Announce();
    findings.ExpectSuccess(sdk.PxnCaptureFrameQueue(stream, &frames.At(0), nullptr),
                           "queueing with the stream what was announced with the camera");
    findings.ExpectResult(PxnErrAlready, frames.QueueForWait(0),
                          "queueing with the camera what was queued with the stream");
    findings.ExpectSuccess(sdk.PxnCaptureQueueFlush(stream), "PxnCaptureQueueFlush of the stream");
    findings.ExpectSuccess(sdk.PxnFrameRevoke(stream, &frames.At(0)),
                           "PxnFrameRevoke with the stream");
}

void CheckStartingTwice(Session& session, Findings& findings) {
    const SdkFunctions& sdk = session.Sdk();
    for (const char* time : {"first", "second"}) {
        findings.ExpectSuccess(sdk.PxnCaptureStart(session.Camera()),
                               std::string("the ") + time + " PxnCaptureStart");
    }
    for (const char* time : {"first", "second"}) {
        findings.ExpectSuccess(sdk.PxnCaptureEnd(session.Camera()),
                               std::string("the ") + time + " PxnCaptureEnd");
    }
}

void CheckWaitingForNothing(Session& session, Findings& findings) {
    FrameSet frames(session, findings, 2);
    frames.Announce();
    findings.RequireSuccess(frames.QueueForWait(1), "PxnCaptureFrameQueue");
    findings.ExpectResult(PxnErrNotAvailable, Wait(session, frames, 1, kWaitMs),
                          "waiting without a capture");
    frames.StartCapture();
    findings.ExpectResult(PxnErrNotAvailable, Wait(session, frames, 0, kWaitMs),
                          "waiting for a frame that is not queued");
}

void CheckTimeout(Session& session, Findings& findings) {
    FrameSet frames(session, findings, 1);
    frames.Announce();
    frames.StartCapture();
    findings.RequireSuccess(frames.QueueForWait(0), "PxnCaptureFrameQueue");
    for (const std::uint32_t timeoutMs : {0u, 60u}) {
        const auto begin = std::chrono::steady_clock::now();
        const PxnError result = Wait(session, frames, 0, timeoutMs);
        const auto passed = std::chrono::steady_clock::now() - begin;
        if (result == PxnErrSuccess) {
            throw NotApplicable("the camera sends frames without being started");
        }
        findings.ExpectResult(PxnErrTimeout, result,
                              "waiting for " + std::to_string(timeoutMs) + " ms");
        findings.Expect(passed >= std::chrono::milliseconds(timeoutMs / 2),
                        "a wait returned before its time");
    }
}

/// `end` ends a wait without limit.
template <typename End>
void CheckEndOfWait(Session& session, Findings& findings, const char* what, End end) {
    FrameSet frames(session, findings, 1);
    frames.Announce();
    frames.StartCapture();
    findings.RequireSuccess(frames.QueueForWait(0), "PxnCaptureFrameQueue");
    PxnError result = PxnErrSuccess;
    {
        const std::jthread waiting([&] { result = Wait(session, frames, 0, kNoLimit); });
        Pause(kQuietMs);
        end(frames);
    }
    if (result == PxnErrSuccess) {
        throw NotApplicable("the camera sends frames without being started");
    }
    findings.ExpectResult(PxnErrNotAvailable, result, std::string("a wait ended by ") + what);
}

void CheckFlushEndsWait(Session& session, Findings& findings) {
    CheckEndOfWait(session, findings, "PxnCaptureQueueFlush",
                   [](FrameSet& frames) { frames.Flush(); });
}

void CheckRevokeAllEndsWait(Session& session, Findings& findings) {
    CheckEndOfWait(session, findings, "PxnFrameRevokeAll",
                   [](FrameSet& frames) { frames.RevokeAll(); });
}

void CheckEndEndsWait(Session& session, Findings& findings) {
    CheckEndOfWait(session, findings, "PxnCaptureEnd",
                   [](FrameSet& frames) { frames.EndCapture(); });
}

void CheckStayingQueued(Session& session, Findings& findings) {
    FrameSet frames(session, findings, 2);
    frames.Announce();
    frames.QueueAll();
    frames.StartCapture();
    frames.EndCapture();
    if (frames.Returns() > 0) {
        throw NotApplicable("the camera sends frames without being started");
    }
    for (std::size_t index = 0; index < frames.Size(); ++index) {
        findings.ExpectResult(PxnErrAlready, frames.Queue(index),
                              "PxnCaptureFrameQueue of a frame that was queued before a capture "
                              "without frames");
    }
}

} // namespace

std::vector<Check> QueueChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"queue", name, Stage::kOpened, Scope::kHarmless, run};
    };
    return {
        check("payload sizes of camera and stream", CheckPayloadSizes),
        check("a frame that is not announced", CheckNotAnnounced),
        check("a frame that is queued", CheckQueued),
        check("revoking all frames", CheckRevokeAll),
        check("announcing an announced frame", CheckAnnouncingAgain),
        check("the camera stands for its first stream", CheckStreamHandle),
        check("starting and ending twice", CheckStartingTwice),
        check("waiting for what cannot come", CheckWaitingForNothing),
        check("waiting for a time", CheckTimeout),
        check("flushing ends a wait", CheckFlushEndsWait),
        check("revoking all ends a wait", CheckRevokeAllEndsWait),
        check("ending the capture ends a wait", CheckEndEndsWait),
        check("queued frames stay queued", CheckStayingQueued),
    };
}

} // namespace conformance
