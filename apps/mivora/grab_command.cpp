// grab_command.cpp - continuous acquisition
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/continuous_grab.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/frame_writer.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "apps/mivora/grab_report.h"
#include "mivora/grabber.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/interrupt.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr std::uint64_t kNanosecondsPerMillisecond = 1000000;
constexpr std::uint64_t kSliceMs = 200;
constexpr std::uint64_t kLeastGraceMs = 1000;
constexpr std::uint64_t kGraceIntervals = 4;
constexpr std::uint64_t kLookForCameraMs = 500;

struct GrabOptions {
    std::uint64_t frames = 0;
    std::uint64_t buffers = 8;
    std::uint64_t timeoutMs = 5000;
    std::string directory;
    std::string format = "png";
    bool reconnect = false;
    bool json = false;
    std::vector<std::string> set;
};

/// A progress line on a terminal, overwritten in place.
class ProgressLine {
public:
    ProgressLine() : shown(platform::IsTerminal(2)) {}
    ~ProgressLine() { Clear(); }

    void Show(std::uint64_t frames, double rate, std::uint64_t errors) {
        const std::uint64_t now = platform::MonotonicNanoseconds();
        if (shown && now - last >= kSliceMs * kNanosecondsPerMillisecond) {
            last = now;
            isWritten = true;
            std::fprintf(stderr, "\r%llu frames, %.1f frames/s, %llu errors   ",
                         static_cast<unsigned long long>(frames), rate,
                         static_cast<unsigned long long>(errors));
        }
    }
    void Clear() {
        if (isWritten) {
            std::fputs("\r                                                            \r", stderr);
            isWritten = false;
        }
    }

private:
    const bool shown;
    bool isWritten = false;
    std::uint64_t last = 0;
};

class GrabRun {
public:
    GrabRun(Session& grabbingSession, const GrabOptions& grabOptions,
            const std::vector<FeatureAssignment>& assignmentsToRepeat)
        : session(grabbingSession),
          options(grabOptions),
          assignments(assignmentsToRepeat),
          grab(grabbingSession, grabOptions.buffers) {
        if (!options.directory.empty()) {
            writer.emplace(options.directory, options.format);
        }
    }

    /// Grabs until all frames are taken, the user interrupts or the camera is lost.
    GrabReport Run() {
        grab.Start();
        while (!IsDone()) {
            if (TakeFrames()) {
                continue;
            }
            grab.Stop();
            if (!options.reconnect || !Reconnect()) {
                report.cameraLost = !platform::InterruptRequested();
                break;
            }
            grab.Start();
        }
        grab.Stop();
        progress.Clear();
        if (writer) {
            writer->Finish();
            report.written = writer->Written();
        }
        report.account = grab.Account();
        report.timing = grab.Timing();
        report.imageSize = grab.Layout().Size();
        report.interrupted = platform::InterruptRequested();
        return report;
    }

    /// Why a camera that was back could not be set up as before.
    const std::optional<CommandFailure>& Refusal() const { return refusal; }

private:
    bool IsDone() const {
        return (options.frames != 0 && taken >= options.frames) || platform::InterruptRequested();
    }

    /// False if no frame arrived for so long that the camera is considered lost.
    bool TakeFrames() {
        std::uint64_t lastFrame = platform::MonotonicNanoseconds();
        while (!IsDone()) {
            std::vector<std::uint8_t> copy;
            if (writer) {
                copy = writer->TakeBuffer(static_cast<std::size_t>(grab.Layout().Size()));
            }
            const FrameResult result = grab.TakeFrame(kSliceMs, writer ? &copy : nullptr);
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
            if (writer && result == FrameResult::kTaken) {
                writer->Push(grab.Layout(), std::move(copy));
            }
            progress.Show(taken, grab.Rate(), session.Log().ReceiveErrors());
        }
        return true;
    }

    /// After a configuration change has been reported, a few missing frames are enough.
    std::uint64_t PatienceMs() const {
        if (!grab.IsSuspicious()) {
            return options.timeoutMs;
        }
        const std::uint64_t intervalMs = grab.LongestInterval() / kNanosecondsPerMillisecond;
        return std::min(options.timeoutMs, std::max(kLeastGraceMs, kGraceIntervals * intervalMs));
    }

    /// Waits until the camera is back and opens it; false if the user interrupts.
    bool Reconnect() {
        CMivoraGrabber& grabber = session.Grabber();
        const std::string name = session.ActCameraText();
        const std::uint32_t id = grabber.GetActCamera()->GetCameraUniqueID();
        progress.Clear();
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
            session.Events().WaitFor(
                [&] { return session.Events().ConfigurationChanges() != changes; },
                kLookForCameraMs);
        }
        return false;
    }

    /// A camera that was without power has lost what was set.
    bool RepeatAssignments() {
        try {
            ApplyFeatureAssignments(session, assignments);
        } catch (const CommandFailure& failure) {
            refusal = failure;
        }
        return !refusal;
    }

    Session& session;
    const GrabOptions& options;
    const std::vector<FeatureAssignment>& assignments; // for a camera that is back
    ContinuousGrab grab;
    std::optional<FrameWriter> writer;
    ProgressLine progress;
    GrabReport report;
    std::optional<CommandFailure> refusal;
    std::uint64_t taken = 0;
};

void Grab(Session& session, const GrabOptions& options) {
    const std::vector<FeatureAssignment> assignments =
        ParseFeatureAssignments(session, options.set);
    session.OpenCamera();
    ApplyFeatureAssignments(session, assignments);
    platform::InstallInterruptHandler();
    GrabRun run(session, options, assignments);
    const GrabReport report = run.Run();
    std::printf("%s", options.json ? (report.Json() + "\n").c_str() : report.Text().c_str());
    std::fflush(stdout);
    if (run.Refusal()) {
        throw *run.Refusal();
    }
    if (report.interrupted && report.account.taken < options.frames) {
        throw CommandFailure("interrupted after " + std::to_string(report.account.taken) + " of " +
                             std::to_string(options.frames) + " frames");
    }
    if (report.cameraLost) {
        throw CommandFailure("no more frames from " + session.ActCameraText() + " after " +
                             std::to_string(report.account.taken) +
                             " frames: it is gone, or slower than --timeout allows");
    }
}

constexpr const char* kGrabFooter =
    "At the end stand the frames, those received in error, frame rate, MB/s, and an account in\n"
    "which every frame that the module handed over is taken, lost or flushed: lost when this\n"
    "program was too slow, flushed when it still waited at the end.\n"
    "\n"
    "Latency is the time from a frame's timestamp to the module's call that it is there; only\n"
    "an SDK with a control interface (the simulator) tells it. Hand-over is the time from that\n"
    "call until this program has the frame in hands, interval the time between two such calls.\n"
    "\n"
    "Examples:\n"
    "  mivora grab --frames 100\n"
    "  mivora grab --frames 100 --set Camera/Width=640 --set Camera/Height=480\n"
    "  mivora grab --frames 50 -o images --format pnm --buffers 16\n"
    "  mivora grab --frames 0 --reconnect        until Ctrl-C\n";

} // namespace

void AddGrabCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("grab", "Grab frames one after another");
    const auto grab = std::make_shared<GrabOptions>();
    command.AddOption("--frames", grab->frames, "Frames to grab; 0: until Ctrl-C")
        .Required()
        .Check(CountProblem)
        .TypeName("N");
    command.AddOption("--buffers", grab->buffers, "Frame buffers (2 or more for whole images)")
        .Check(PositiveCountProblem)
        .ShowDefault()
        .TypeName("B");
    command.AddOption("-o,--output", grab->directory, "Write every frame into this directory")
        .TypeName("DIR");
    command.AddOption("--format", grab->format, "File format of the frames")
        .OneOf({"png", "pnm", "raw"})
        .ShowDefault();
    command
        .AddOption("--timeout", grab->timeoutMs,
                   "Without a frame for so many milliseconds the camera counts as gone")
        .Check(CountProblem)
        .ShowDefault()
        .TypeName("MS");
    command.AddFlag("--reconnect", grab->reconnect,
                    "When the camera is gone wait for it and go on");
    command.AddFlag("--json", grab->json, "Print JSON");
    AddSetOption(command, grab->set);
    command.SetFooter(kGrabFooter);
    command.OnRun([&options, maker, grab] {
        Session session(options, maker());
        Grab(session, *grab);
    });
}
