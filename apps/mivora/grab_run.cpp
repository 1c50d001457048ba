// grab_run.cpp - the acquisition of the command "grab"
#include "apps/mivora/grab_run.h"

#include "apps/common/session.h"
#include "platform/interrupt.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;
constexpr std::uint32_t kSliceMs = 200;
constexpr std::uint64_t kLeastGraceMs = 1000;
constexpr std::uint64_t kGraceIntervals = 4;
// The first request of the user ends the acquisition, the second one the writing.
constexpr unsigned kGiveUpRequests = 2;

} // namespace

GrabRun::GrabRun(Session& grabbingSession, const GrabOptions& grabOptions,
                 CameraReturn& reconnectingCamera)
    : session(grabbingSession),
      options(grabOptions),
      cameraReturn(reconnectingCamera),
      grab(grabbingSession, grabOptions.buffers),
      wait(grabbingSession),
      display(grabOptions.progress) {
    if (options.IsRecorded()) {
        recording.emplace(session, options);
    }
}

GrabReport GrabRun::Run() {
    Start();
    while (!IsDone() && (TakeFrames() || GoOn())) {
    }
    Stop();
    report.account = grab.Account();
    report.timing = grab.Timing();
    report.imageSize = grab.Layout().Size();
    report.packets = wait.Packets();
    report.reconnects = cameraReturn.Times();
    report.interrupted = platform::InterruptRequested();
    if (recording) {
        WriteRest();
        report.recording = recording->Close(Ending());
    }
    display.Clear();
    return report;
}

bool GrabRun::IsDone() const {
    return (options.frames != 0 && taken >= options.frames) || platform::InterruptRequested() ||
           (recording && recording->IsOver());
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
        std::vector<std::uint8_t>* const buffer =
            recording ? recording->NextBuffer(grab.Layout().Size()) : nullptr;
        const FrameResult result = grab.TakeFrame(kSliceMs, buffer, frame);
        ShowProgress();
        if (result == FrameResult::kNone) {
            if (wait.WaitedMs() >= PatienceMs()) {
                return false;
            }
            continue;
        }
        wait.OnFrame();
        isWaitTold = false;
        isThere = false;
        ++taken;
        if (recording) {
            recording->Add(result, frame, grab.Layout());
        } else {
            CountMissing(frame);
        }
    }
    return true;
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

/// After a configuration change has been reported, a few missing frames are enough.
std::uint64_t GrabRun::PatienceMs() const {
    if (isThere || !grab.IsSuspicious()) {
        return options.timeoutMs;
    }
    const std::uint64_t intervalMs = grab.LongestInterval() / kNanosecondsPerMillisecond;
    return std::min(options.timeoutMs, std::max(kLeastGraceMs, kGraceIntervals * intervalMs));
}

/// After no frame for too long: true if it goes on. Only a camera that is gone is closed and opened
/// again.
bool GrabRun::GoOn() {
    const NoFrameCause cause = wait.FindCause();
    const bool isGone = cause.kind == NoFrameKind::kGone;
    if (!isGone && wait.WaitedMs() < options.timeoutMs) {
        isThere = true; // the configuration change was another one
        return true;
    }
    display.Clear();
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
    if (options.reconnect && isGone) {
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
    std::fprintf(stderr, "mivora: no frame from %s after %llu frames: %s; %s\n",
                 session.ActCameraText().c_str(), static_cast<unsigned long long>(taken),
                 cause.text.c_str(), consequence);
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
    if (recording) {
        recording->AddPause();
    }
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
            display.Clear();
            std::fprintf(stderr, "mivora: gave up %llu frames that were not written yet\n",
                         static_cast<unsigned long long>(count));
            return;
        }
        if (platform::InterruptRequested() && !isTold) {
            isTold = true;
            display.Clear();
            std::fprintf(stderr,
                         "mivora: stopped; %llu frames are still to be written, Ctrl-C gives "
                         "them up\n",
                         static_cast<unsigned long long>(recording->Counts().waiting));
        }
    }
}

/// Why a recording without a gap is not complete; empty if it is.
std::string GrabRun::Ending() const {
    if (options.frames == 0 || taken >= options.frames) {
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
    display.Show(progress);
}
