// grab_run.cpp - the acquisition of the command "grab"
#include "apps/mivora/grab_run.h"

#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "platform/clock.h"
#include "platform/interrupt.h"

#include <algorithm>
#include <limits>
#include <string>

namespace {

constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;
constexpr std::uint32_t kSliceMs = 200;
constexpr std::uint32_t kTriggerTimeoutMs = 1000;
constexpr std::uint64_t kLeastGraceMs = 1000;
constexpr std::uint64_t kGraceIntervals = 4;
constexpr unsigned kMostReturns = 3; // without a frame
// The first request of the user ends the acquisition, the second one the writing.
constexpr unsigned kGiveUpRequests = 2;

} // namespace

GrabRun::GrabRun(Session& grabbingSession, const GrabOptions& grabOptions,
                 CameraReturn& reconnectingCamera, const GrabShare& sharedParts,
                 std::size_t runNumber)
    : session(grabbingSession),
      options(grabOptions),
      cameraReturn(reconnectingCamera),
      share(sharedParts),
      number(runNumber),
      grab(grabbingSession, grabOptions.buffers, grabOptions.isPaced),
      wait(grabbingSession, [this] { return grab.ReceiveErrors(); }) {
    if (options.IsRecorded()) {
        recording.emplace(session, options, share.unixMinusHostNs);
    }
}

GrabReport GrabRun::Run() {
    if (StartTogether()) {
        while (!IsDone() && (TakeFrames() || GoOn())) {
        }
    }
    Stop();
    report.account = grab.Account();
    report.timing = grab.Timing();
    report.wanted = options.frames;
    report.imageSize = grab.Layout().Size();
    report.packets = wait.Packets();
    report.reconnects = cameraReturn.Times();
    report.interrupted = platform::InterruptRequested();
    report.isGivenUp = !IsAllTaken() && !report.interrupted && share.gate.IsGivenUp();
    if (recording) {
        WriteRest();
        report.recording = recording->Close(Ending());
    }
    share.console.Clear();
    return report;
}

/// False if another run does not come to its start.
bool GrabRun::StartTogether() {
    wait.Begin();
    grab.Prepare();
    if (!share.gate.Pass()) {
        return false;
    }
    wait.BeginWaiting();
    grab.Begin();
    if (share.gate.IsLastToStart() && options.IsTriggered()) {
        share.console.Say("waiting for the trigger");
    }
    return true;
}

bool GrabRun::IsAllTaken() const {
    return options.frames != 0 && taken >= options.frames;
}

bool GrabRun::IsDone() const {
    return IsAllTaken() || platform::InterruptRequested() || (recording && recording->IsOver()) ||
           share.gate.IsGivenUp();
}

void GrabRun::Start() {
    wait.Begin();
    grab.Start();
}

void GrabRun::Stop() {
    if (grab.IsRunning()) {
        wait.End();
        grab.Stop();
    }
}

/// False if no frame arrived for too long.
bool GrabRun::TakeFrames() {
    while (!IsDone()) {
        if (options.isPaced && recording &&
            !recording->WaitForRoom(grab.Layout().Size(), kSliceMs)) {
            ShowProgress();
            continue;
        }
        std::vector<std::uint8_t>* const buffer =
            recording ? recording->NextBuffer(grab.Layout().Size()) : nullptr;
        TriggerWhenDue();
        const FrameResult result = grab.TakeFrame(SliceMs(), buffer, frame);
        ShowProgress();
        if (result == FrameResult::kNone) {
            if (wait.WaitedMs() >= PatienceMs()) {
                return false;
            }
            continue;
        }
        Take(result);
    }
    return true;
}

void GrabRun::Take(FrameResult result) {
    wait.OnFrame();
    isWaitTold = false;
    isThere = false;
    returns = 0;
    if (taken++ == 0) {
        report.firstFrameNs = frame.handedOver;
    }
    if (recording) {
        recording->Add(result, frame, grab.Layout());
    } else {
        CountMissing(frame);
    }
}

/// The first trigger shows whether the camera takes one; a later one that it does not take leads to
/// a frame that does not come, whose cause is looked for then.
void GrabRun::TriggerWhenDue() {
    const std::uint64_t period = options.triggerEveryMs * kNanosecondsPerMillisecond;
    const std::uint64_t now = platform::MonotonicNanoseconds();
    if (period == 0 || now < nextTrigger) {
        return;
    }
    const bool isFirst = nextTrigger == 0;
    // One that is late does not shift those that follow, unless the next one is late as well.
    nextTrigger = isFirst || now - nextTrigger >= period ? now + period : nextTrigger + period;
    try {
        session.Services().RunCommand("Camera", "TriggerSoftware", kTriggerTimeoutMs);
    } catch (const CommandFailure&) {
        if (isFirst) {
            throw;
        }
    }
}

/// How long to wait for a frame before something else is to be done.
std::uint64_t GrabRun::SliceMs() const {
    if (options.triggerEveryMs == 0) {
        return kSliceMs;
    }
    const std::uint64_t now = platform::MonotonicNanoseconds();
    const std::uint64_t left = nextTrigger - std::min(now, nextTrigger);
    return std::min<std::uint64_t>(kSliceMs, left / kNanosecondsPerMillisecond + 1);
}

void GrabRun::CountMissing(const TakenFrame& takenFrame) {
    for (const FrameGap& gap : takenFrame.before) {
        missing += gap.count;
    }
}

/// What came after the last frame that was taken belongs to a recording that goes on, or that ends
/// because nothing else comes.
void GrabRun::RecordRest() {
    frame.before.clear();
    grab.TakeRest(frame.before);
    if (recording) {
        recording->AddGaps(frame.before);
    }
}

/// A trigger may come at any time.
bool GrabRun::IsFirstAwaited() const {
    return options.IsTriggered() && taken == 0 && grab.ReceiveErrors() == 0;
}

std::uint64_t GrabRun::TimeoutMs() const {
    return IsFirstAwaited() ? std::numeric_limits<std::uint64_t>::max() : options.timeoutMs;
}

/// After a configuration change has been reported, a few missing frames are enough.
std::uint64_t GrabRun::PatienceMs() const {
    if (isThere || !grab.IsSuspicious()) {
        return TimeoutMs();
    }
    const std::uint64_t intervalMs = grab.LongestInterval() / kNanosecondsPerMillisecond;
    return std::min(TimeoutMs(), std::max(kLeastGraceMs, kGraceIntervals * intervalMs));
}

/// After no frame for too long: true if it goes on. Only a camera that is gone is closed and opened
/// again.
bool GrabRun::GoOn() {
    const NoFrameCause cause = wait.FindCause();
    const bool isGone = cause.kind == NoFrameKind::kGone;
    if (!isGone && wait.WaitedMs() < TimeoutMs()) {
        isThere = true; // the configuration change was another one
        return true;
    }
    share.console.Clear();
    if (options.reconnect && cause.IsWait()) {
        if (!isWaitTold) {
            TellOf(cause, "going on");
        }
        isWaitTold = true;
        wait.OnFrame();
        return true;
    }
    const std::uint64_t lastFrame = wait.LastFrame();
    Stop();
    RecordRest();
    // One that is back and sends nothing may not have forgotten the connection it had.
    if (options.reconnect && (isGone || (returns > 0 && returns < kMostReturns))) {
        TellOf(cause, "waiting for it");
        if (Reconnect(lastFrame)) {
            return true;
        }
    }
    if (!platform::InterruptRequested()) {
        report.noFrameCause = cause;
    }
    return false;
}

void GrabRun::TellOf(const NoFrameCause& cause, const char* consequence) {
    share.console.Say("no frame from " + session.ActCameraText() + " after " +
                      std::to_string(taken) + " frames: " + cause.text + "; " + consequence);
}

/// False if the user interrupts, or the camera cannot be set up as before.
bool GrabRun::Reconnect(std::uint64_t lastFrame) {
    try {
        if (!cameraReturn.Await(lastFrame)) {
            return false;
        }
    } catch (const CommandFailure& failure) {
        refusal = failure;
        return false;
    }
    if (recording && returns == 0) {
        recording->AddPause();
    }
    ++returns;
    Start();
    return true;
}

/// Waits for what waits to be written, until the user gives it up.
void GrabRun::WriteRest() {
    bool isTold = false;
    while (!recording->WaitUntilWritten(kSliceMs)) {
        ShowProgress();
        if (platform::InterruptCount() >= kGiveUpRequests) {
            const std::uint64_t count = recording->GiveUp();
            share.console.Say("gave up " + std::to_string(count) +
                              " frames that were not written yet" + OfCamera());
            return;
        }
        if (platform::InterruptRequested() && !isTold) {
            isTold = true;
            share.console.Say("stopped" + OfCamera() + "; " +
                              std::to_string(recording->Counts().waiting) +
                              " frames are still to be written, Ctrl-C gives them up");
        }
    }
}

/// Which camera a line is about, when there are several.
std::string GrabRun::OfCamera() const {
    return session.IsShared() ? " (" + session.ActCameraText() + ")" : "";
}

/// Why a recording without a gap is not complete; empty if it is.
std::string GrabRun::Ending() const {
    if (report.isGivenUp) {
        return "ended because of another camera after " + std::to_string(taken) + " frames";
    }
    if (options.frames == 0 || IsAllTaken()) {
        return {};
    }
    return (report.interrupted ? "interrupted after " : "no more frames came after ") +
           std::to_string(taken) + " of " + std::to_string(options.frames) + " frames";
}

void GrabRun::ShowProgress() {
    GrabProgress progress;
    progress.taken = taken;
    progress.wanted = options.frames;
    progress.lost = missing;
    progress.bytes = taken * grab.Layout().Size();
    if (recording) {
        const RecorderCounts counts = recording->Counts();
        progress.isRecorded = true;
        progress.lost = counts.Missing();
        progress.written = counts.recorded;
        progress.waiting = counts.waiting;
        progress.bytes = counts.bytes;
    }
    share.console.Show(number, progress);
}
