// grab_run.cpp - the acquisition of the command "grab"
#include "apps/mivora/grab_run.h"

#include "apps/common/session.h"
#include "mivora/grabber.h"
#include "platform/clock.h"
#include "platform/interrupt.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;
constexpr std::uint32_t kSliceMs = 200;
constexpr std::uint64_t kLeastGraceMs = 1000;
constexpr std::uint64_t kGraceIntervals = 4;
constexpr std::uint64_t kLookForCameraMs = 500;
// The first request of the user ends the acquisition, the second one the writing.
constexpr unsigned kGiveUpRequests = 2;

} // namespace

GrabRun::GrabRun(Session& grabbingSession, const GrabOptions& grabOptions,
                 const std::vector<FeatureAssignment>& assignmentsToRepeat)
    : session(grabbingSession),
      options(grabOptions),
      assignments(assignmentsToRepeat),
      grab(grabbingSession, grabOptions.buffers),
      display(grabOptions.progress) {
    if (options.IsRecorded()) {
        recording.emplace(session, options);
    }
}

GrabReport GrabRun::Run() {
    grab.Start();
    while (!IsDone()) {
        if (TakeFrames()) {
            continue;
        }
        grab.Stop();
        RecordRest();
        if (!options.reconnect || !Reconnect()) {
            report.cameraLost = !platform::InterruptRequested();
            break;
        }
        if (recording) {
            recording->AddPause();
        }
        grab.Start();
    }
    grab.Stop();
    report.account = grab.Account();
    report.timing = grab.Timing();
    report.imageSize = grab.Layout().Size();
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

/// False if no frame arrived for so long that the camera is considered lost.
bool GrabRun::TakeFrames() {
    std::uint64_t lastFrame = platform::MonotonicNanoseconds();
    while (!IsDone()) {
        std::vector<std::uint8_t>* const buffer =
            recording ? recording->NextBuffer(grab.Layout().Size()) : nullptr;
        const FrameResult result = grab.TakeFrame(kSliceMs, buffer, frame);
        ShowProgress();
        if (result == FrameResult::kNone) {
            const std::uint64_t waitedMs =
                (platform::MonotonicNanoseconds() - lastFrame) / kNanosecondsPerMillisecond;
            if (waitedMs >= PatienceMs()) {
                return false;
            }
            continue;
        }
        lastFrame = platform::MonotonicNanoseconds();
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
    if (!grab.IsSuspicious()) {
        return options.timeoutMs;
    }
    const std::uint64_t intervalMs = grab.LongestInterval() / kNanosecondsPerMillisecond;
    return std::min(options.timeoutMs, std::max(kLeastGraceMs, kGraceIntervals * intervalMs));
}

/// Waits until the camera is back and opens it; false if the user interrupts.
bool GrabRun::Reconnect() {
    CMivoraGrabber& grabber = session.Grabber();
    const std::string name = session.ActCameraText();
    const std::uint32_t id = grabber.GetActCamera()->GetCameraUniqueID();
    display.Clear();
    std::fprintf(stderr, "mivora: no frame from %s after %llu frames; waiting for it\n",
                 name.c_str(), static_cast<unsigned long long>(taken));
    grabber.CloseActCamera();
    while (!platform::InterruptRequested()) {
        session.Check("RefreshCameraList", grabber.RefreshCameraList());
        const std::int32_t index = grabber.GetCameraIndexByCameraUniqueID(id);
        if (index >= 0 && grabber.SetActCameraIndex(index) == MV_OK &&
            grabber.OpenActCamera() == MV_OK) {
            if (!RepeatAssignments()) {
                return false;
            }
            ++report.reconnects;
            std::fprintf(stderr, "mivora: %s is back\n", name.c_str());
            return true;
        }
        const std::uint64_t changes = session.Events().ConfigurationChanges();
        session.Events().WaitFor([&] { return session.Events().ConfigurationChanges() != changes; },
                                 kLookForCameraMs);
    }
    return false;
}

/// A camera that was without power has lost what was set.
bool GrabRun::RepeatAssignments() {
    try {
        ApplyFeatureAssignments(session, assignments);
    } catch (const CommandFailure& failure) {
        refusal = failure;
    }
    return !refusal;
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
