// frame_checks.cpp - checks of the rules for frames of a camera that sends some
#include "platform/event.h"
#include "pxnc/conformance/checks.h"
#include "pxnc/conformance/frame_set.h"
#include "pxnc/conformance/waiting.h"

#include <atomic>
#include <string>
#include <thread>

namespace conformance {
namespace {

constexpr std::uint32_t kFrameWaitMs = 5000;

void CheckRecord(const PxnFrame& frame, Findings& findings) {
    const auto has = [&](std::uint32_t flag) {
        return (frame.receiveFlags & flag) != 0;
    };
    findings.Expect(frame.receiveStatus <= PxnFrameStatusComplete &&
                        frame.receiveStatus >= PxnFrameStatusInvalid,
                    "receiveStatus is " + std::to_string(frame.receiveStatus));
    findings.Expect((frame.receiveFlags & ~127u) == 0, "receiveFlags has unknown bits");
    findings.Expect(!has(PxnFrameFlagPayloadType) || frame.payloadType <= PxnPayloadChunkOnly,
                    "payloadType is " + std::to_string(frame.payloadType));
    findings.Expect(!has(PxnFrameFlagChunkData) || frame.chunkDataPresent <= 1,
                    "chunkDataPresent is neither 0 nor 1");
    if (frame.receiveStatus == PxnFrameStatusComplete && has(PxnFrameFlagImageData)) {
        const auto begin = reinterpret_cast<std::uintptr_t>(frame.buffer);
        const auto image = reinterpret_cast<std::uintptr_t>(frame.imageData);
        findings.Expect(image >= begin && image + frame.imageSize <= begin + frame.bufferSize,
                        "the image is not inside the buffer");
    }
    if (frame.receiveStatus == PxnFrameStatusComplete && has(PxnFrameFlagDimension)) {
        findings.Expect(frame.width > 0 && frame.height > 0, "width or height is 0");
    }
}

void CheckRecords(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    FrameSet frames(session, findings, 4);
    frames.Announce();
    frames.QueueAll();
    frames.Start();
    frames.RequireReturns(frames.Size());
    frames.StopCamera();
    frames.EndCapture();
    findings.Expect(frames.Strangers() == 0,
                    "a callback got handles or a context that are not the frame's");
    for (std::size_t index = 0; index < frames.Size(); ++index) {
        CheckRecord(frames.At(index), findings);
        findings.Expect(frames.AreMarginsUntouched(index), "memory outside a buffer was written");
    }
}

void CheckOnePerQueueing(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    constexpr unsigned kAgain = 12;
    std::atomic<unsigned> again = 0;
    FrameSet frames(session, findings, 4);
    const std::uint64_t queueings = frames.Size() + kAgain;
    frames.Announce();
    frames.onFrame = [&](std::size_t index) {
        if (++again <= kAgain) {
            findings.ExpectSuccess(frames.Queue(index), "PxnCaptureFrameQueue inside the callback");
        }
    };
    frames.QueueAll();
    frames.Start();
    frames.RequireReturns(queueings);
    // More frames are sent, and no frame is queued.
    frames.WaitForReturns(queueings + 1, kQuietMs);
    findings.Expect(frames.Strays() == 0,
                    std::to_string(frames.Strays()) + " callbacks for frames that were not queued");
    findings.Expect(frames.Returns() == queueings, std::to_string(queueings) + " queueings made " +
                                                       std::to_string(frames.Returns()) +
                                                       " callbacks");
}

void CheckOverlaps(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    constexpr std::uint32_t kSlowMs = 30;
    const std::vector<PxnHandle> streams = session.Streams();
    FrameSet frames(session, findings, 3 * streams.size() + 3, streams);
    frames.Announce();
    frames.onFrame = [](std::size_t) {
        Pause(kSlowMs);
    };
    frames.QueueAll();
    frames.Start();
    frames.RequireReturns(frames.Size());
    findings.Expect(frames.Overlaps() == 0,
                    std::to_string(frames.Overlaps()) + " callbacks began while another one ran");
}

void CheckUnqueued(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    FrameSet frames(session, findings, 6);
    frames.Announce();
    frames.onFrame = [&](std::size_t index) {
        frames.Queue(index);
    };
    for (const std::size_t index : {1u, 4u}) {
        findings.RequireSuccess(frames.Queue(index), "PxnCaptureFrameQueue");
    }
    frames.Start();
    frames.RequireReturns(12);
    frames.StopCamera();
    frames.EndCapture();
    for (const std::size_t index : {0u, 2u, 3u, 5u}) {
        findings.Expect(frames.IsUntouched(index),
                        "frame " + std::to_string(index) + ", which was not queued, was written");
    }
}

void CheckUpdatedBuffer(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    std::vector<std::uint8_t> other;
    FrameSet frames(session, findings, 1);
    frames.Announce();
    PxnFrame& frame = frames.At(0);
    void* const former = frame.buffer;
    other.assign(frame.bufferSize, 0x5A);
    frame.buffer = other.data();
    findings.RequireSuccess(frames.Announce(0), "PxnFrameAnnounce of an announced frame");
    frames.QueueAll();
    frames.Start();
    frames.RequireReturns(1);
    frames.StopCamera();
    frames.EndCapture();
    const std::vector<std::uint8_t> untouched(frame.bufferSize, 0x5A);
    findings.Expect(frame.receiveStatus != PxnFrameStatusComplete || other != untouched,
                    "the new buffer was not written");
    findings.Expect(frame.buffer == other.data(), "the SDK changed the field buffer");
    frame.buffer = former;
    findings.Expect(frames.IsBufferUntouched(0), "the former buffer was written");
}

void CheckWaits(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    FrameSet frames(session, findings, 4);
    frames.Announce();
    for (std::size_t index = 0; index < frames.Size(); ++index) {
        findings.RequireSuccess(frames.QueueForWait(index), "PxnCaptureFrameQueue");
    }
    frames.Start();
    const auto wait = [&](std::size_t index, std::uint32_t timeoutMs) {
        session.GetDriver().LetFramesCome();
        return session.Sdk().PxnCaptureFrameWait(session.Camera(), &frames.At(index), timeoutMs);
    };
    const std::size_t last = frames.Size() - 1;
    PxnError result = PxnErrTimeout;
    WaitUntil(
        [&] {
            result = wait(last, 20);
            return result != PxnErrTimeout;
        },
        kFrameWaitMs);
    findings.RequireSuccess(result, "waiting for the frame that was queued last");
    for (std::size_t index = 0; index < last; ++index) {
        findings.ExpectSuccess(wait(index, 0), "waiting for a frame that was queued before it");
    }
    findings.ExpectSuccess(wait(last, 0), "a second wait for a frame that has come back");
    findings.Expect(frames.Returns() == 0, "a frame that was queued without a callback has one");
    findings.RequireSuccess(frames.QueueForWait(0), "queueing a frame that has come back");
}

/// `take` takes the frames back while the camera sends; nothing may touch them afterwards.
template <typename Take>
void CheckTakingBack(Session& session, Findings& findings, const char* what, Take take) {
    session.RequireFrames(findings);
    std::atomic<bool> isOver = false;
    FrameSet frames(session, findings, 4);
    frames.Announce();
    frames.onFrame = [&](std::size_t index) {
        // Frame 0 comes back once and is the host's from then on.
        if (!isOver && index != 0) {
            frames.Queue(index);
        }
    };
    frames.QueueAll();
    frames.Start();
    frames.RequireReturns(4);
    isOver = true;
    take(frames);
    const std::uint64_t returns = frames.Returns();
    for (std::size_t index = 0; index < frames.Size(); ++index) {
        frames.Renew(index);
    }
    frames.WaitForReturns(returns + 1, kQuietMs);
    findings.Expect(frames.Returns() == returns, std::string("a callback came after ") + what);
    for (std::size_t index = 0; index < frames.Size(); ++index) {
        findings.Expect(frames.IsUntouched(index),
                        "frame " + std::to_string(index) + " was written after " + what);
    }
}

void CheckFlushTakesBack(Session& session, Findings& findings) {
    CheckTakingBack(session, findings, "PxnCaptureQueueFlush", [&](FrameSet& frames) {
        findings.RequireSuccess(frames.Flush(), "PxnCaptureQueueFlush");
    });
}

void CheckRevokeTakesBack(Session& session, Findings& findings) {
    CheckTakingBack(session, findings, "PxnFrameRevokeAll", [&](FrameSet& frames) {
        findings.RequireSuccess(frames.RevokeAll(), "PxnFrameRevokeAll");
    });
}

void CheckCloseTakesBack(Session& session, Findings& findings) {
    CheckTakingBack(session, findings, "PxnCameraClose", [&](FrameSet& frames) {
        frames.Forget();
        findings.RequireSuccess(session.CloseCamera(), "PxnCameraClose");
    });
}

void CheckShutdownTakesBack(Session& session, Findings& findings) {
    CheckTakingBack(session, findings, "PxnShutdown", [&](FrameSet& frames) {
        frames.Forget();
        session.ForgetCamera();
        session.Stop();
    });
}

/// `call` must wait until a running callback has returned.
template <typename Call>
void CheckWaitingForCallback(Session& session, Findings& findings, const char* what, Call call) {
    session.RequireFrames(findings);
    platform::Event release;
    FrameSet frames(session, findings, 2);
    frames.Announce();
    frames.onFrame = [&](std::size_t) {
        release.Wait(kWaitMs);
    };
    frames.QueueAll();
    frames.Start();
    findings.Require(WaitUntil([&] {
                         session.GetDriver().LetFramesCome();
                         return frames.IsInCallback();
                     }),
                     "no frame came");
    {
        std::atomic<bool> hasReturned = false;
        const std::jthread calling([&] {
            call(frames);
            findings.Expect(!frames.IsInCallback(),
                            std::string(what) + " returned while the callback ran");
            hasReturned = true;
        });
        Pause(kQuietMs);
        findings.Expect(!hasReturned, std::string(what) + " does not wait for the callback");
        release.Set();
    }
}

void CheckEndWaits(Session& session, Findings& findings) {
    CheckWaitingForCallback(session, findings, "PxnCaptureEnd",
                            [](FrameSet& frames) { frames.EndCapture(); });
}

void CheckFlushWaits(Session& session, Findings& findings) {
    CheckWaitingForCallback(session, findings, "PxnCaptureQueueFlush",
                            [](FrameSet& frames) { frames.Flush(); });
}

void CheckRevokeAllWaits(Session& session, Findings& findings) {
    CheckWaitingForCallback(session, findings, "PxnFrameRevokeAll",
                            [](FrameSet& frames) { frames.RevokeAll(); });
}

void CheckCloseWaits(Session& session, Findings& findings) {
    CheckWaitingForCallback(session, findings, "PxnCameraClose", [&](FrameSet& frames) {
        frames.Forget();
        session.CloseCamera();
    });
}

void CheckSurvivingEnd(Session& session, Findings& findings) {
    session.RequireFrames(findings);
    FrameSet frames(session, findings, 2);
    frames.Announce();
    frames.QueueAll();
    frames.StartCapture();
    frames.EndCapture();
    frames.Start();
    frames.RequireReturns(2);
}

} // namespace

std::vector<Check> FrameChecks() {
    const auto check = [](const char* name, void (*run)(Session&, Findings&)) {
        return Check{"frames", name, Stage::kOpened, Scope::kHarmless, run};
    };
    return {
        check("what a frame says", CheckRecords),
        check("one callback for each queueing", CheckOnePerQueueing),
        check("callbacks of a camera do not overlap", CheckOverlaps),
        check("a frame that is not queued is not written", CheckUnqueued),
        check("an updated frame is filled in its new buffer", CheckUpdatedBuffer),
        check("waits end with their frames, in order", CheckWaits),
        check("queued frames survive the end of a capture", CheckSurvivingEnd),
        check("ending the capture waits for the callback", CheckEndWaits),
        check("flushing waits for the callback", CheckFlushWaits),
        check("revoking all waits for the callback", CheckRevokeAllWaits),
        check("closing waits for the callback", CheckCloseWaits),
        check("flushing gives the memory back", CheckFlushTakesBack),
        check("revoking all gives the memory back", CheckRevokeTakesBack),
        check("closing gives the memory back", CheckCloseTakesBack),
        check("the last shutdown gives the memory back", CheckShutdownTakesBack),
    };
}

} // namespace conformance
