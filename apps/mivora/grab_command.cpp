// grab_command.cpp - continuous acquisition
#include "apps/common/command_failure.h"
#include "apps/common/command_line.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/format_handling.h"
#include "apps/common/image_writer.h"
#include "apps/common/session.h"
#include "apps/mivora/camera_return.h"
#include "apps/mivora/commands.h"
#include "apps/mivora/grab_options.h"
#include "apps/mivora/grab_run.h"
#include "platform/console.h"
#include "platform/interrupt.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

/// Throws unless what was wanted has been done.
void ThrowOutcome(Session& session, const GrabOptions& options, const GrabRun& run,
                  const GrabReport& report) {
    if (run.Refusal()) {
        throw *run.Refusal();
    }
    const std::string reason = report.recording ? report.recording->Reason() : "";
    const std::vector<std::string> details(reason.empty() ? 0 : 1, reason);
    if (report.recording && !report.recording->failure.empty()) {
        throw CommandFailure(report.recording->failure, details);
    }
    if (report.interrupted && report.account.taken < options.frames) {
        throw CommandFailure("interrupted after " + std::to_string(report.account.taken) + " of " +
                                 std::to_string(options.frames) + " frames",
                             details);
    }
    if (report.noFrameCause) {
        throw CommandFailure("no more frames from " + session.ActCameraText() + " after " +
                                 std::to_string(report.account.taken) +
                                 " frames: " + report.noFrameCause->text,
                             details);
    }
    if (!reason.empty()) {
        throw FramesMissing(reason);
    }
}

void OpenCamera(Session& session, const GrabOptions& options,
                const std::vector<FeatureAssignment>& assignments, CameraReturn& cameraReturn) {
    if (!options.reconnect) {
        session.OpenCamera();
    } else if (!cameraReturn.OpenFirst()) {
        throw CommandFailure("interrupted before there was a camera");
    }
    ApplyFeatureAssignments(session, assignments);
    if (const auto format = ReadPixelFormat(session.OptionalServices())) {
        WarnOfFormat(*format, DescribeImage(session.CheckedMode()));
    }
    if (options.reconnect) {
        cameraReturn.KeepSettings();
    }
}

void Grab(Session& session, const GrabOptions& options) {
    const std::vector<FeatureAssignment> assignments =
        ParseFeatureAssignments(session, options.set);
    platform::InstallInterruptHandler(options.IsRecorded() ? 2 : 1);
    CameraReturn cameraReturn(session, assignments);
    OpenCamera(session, options, assignments, cameraReturn);
    if (options.IsStream()) {
        platform::ReportBrokenPipes();
    }
    GrabRun run(session, options, cameraReturn);
    const GrabReport report = run.Run();
    std::FILE* const output = options.IsStream() ? stderr : stdout;
    std::fputs(options.json ? (report.Json() + "\n").c_str() : report.Text().c_str(), output);
    std::fflush(output);
    ThrowOutcome(session, options, run, report);
}

constexpr const char* kGrabFooter =
    "At the end stand the frames, those received in error, frame rate, MB/s, and an account in\n"
    "which every frame that the module handed over is taken, lost or flushed: lost when this\n"
    "program was too slow, flushed when it still waited at the end.\n"
    "\n"
    "A recording has recording.json, which describes it, and frames.jsonl, a line for each frame\n"
    "from the first to the last, recorded or not. Status 0: the wanted number of frames is\n"
    "recorded, and none is missing between them. 3: it was done, but frames are missing. The\n"
    "first Ctrl-C stops the camera and writes what waits, the second gives that up.\n"
    "\n"
    "Latency is the time from a frame's timestamp to the module's call that it is there; only\n"
    "an SDK with a control interface (the simulator) tells it. Hand-over is the time from that\n"
    "call until this program has the frame in hands, interval the time between two such calls.\n"
    "\n"
    "Examples:\n"
    "  mivora grab --frames 100\n"
    "  mivora grab --frames 100 --set Camera/Width=640 --set Camera/Height=480\n"
    "  mivora grab --frames 50 -o images --format pnm --buffers 16\n"
    "  mivora grab --frames 10000 -o run1 --format stack --queue 2000 --when-full stop\n"
    "  mivora grab --frames 300 -o - --format pnm | viewer\n"
    "  mivora grab --frames 0 --reconnect        until Ctrl-C\n";

} // namespace

void AddGrabCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand("grab", "Grab frames one after another");
    const auto grab = std::make_shared<GrabOptions>();
    command.AddOption("-n,--frames", grab->frames, "Frames to grab; 0: until Ctrl-C")
        .Required()
        .Check(CountProblem)
        .TypeName("N");
    command.AddOption("-b,--buffers", grab->buffers, "Frame buffers (2 or more for whole images)")
        .Check(PositiveCountProblem)
        .ShowDefault()
        .TypeName("B");
    CommandOption output =
        command
            .AddOption("-o,--output", grab->output,
                       "Record the frames into this directory; - writes them to standard output")
            .TypeName("DIR");
    command
        .AddOption("-f,--format", grab->format,
                   "How frames are kept: a file for each (png, tiff, pnm, raw) or one for all "
                   "(multi-tiff, stack); png if not given, raw on standard output")
        .OneOf({"png", "tiff", "pnm", "raw", "multi-tiff", "stack"})
        .Needs(output);
    command
        .AddOption("--png-level", grab->pngLevel, "How well png compresses, 0 to 9; 1 if not given")
        .Check(PngLevelProblem)
        .TypeName("L")
        .Needs(output);
    command.AddFlag("--deflate", grab->deflate, "Compress the pixels of tiff and multi-tiff")
        .Needs(output);
    command
        .AddFlag("--overwrite", grab->overwrite, "Replace the recording that the directory holds")
        .Needs(output);
    command
        .AddOption("--queue", grab->queueMegabytes,
                   "Megabytes (10^6) of frames that may wait to be written")
        .Check(PositiveCountProblem)
        .ShowDefault()
        .TypeName("MB")
        .Needs(output);
    command
        .AddOption("--when-full", grab->whenFull,
                   "What a full queue does: drop frames until there is room, or stop")
        .OneOf({"drop", "stop"})
        .ShowDefault()
        .Needs(output);
    command.AddFlag("--progress", grab->progress,
                    "Show progress also where standard error is no terminal, a line each second");
    command
        .AddOption("-t,--timeout", grab->timeoutMs,
                   "After so many milliseconds without a frame say why and end")
        .Check(CountProblem)
        .ShowDefault()
        .TypeName("MS");
    command.AddFlag("--reconnect", grab->reconnect,
                    "Wait for a camera that is not there or gone, set it up as it was and go on");
    command.AddJson(grab->json);
    AddSetOption(command, grab->set);
    command.SetFooter(kGrabFooter);
    command.OnRun([&options, maker, grab] {
        if (const std::string problem = grab->Problem(); !problem.empty()) {
            throw BadUsage(problem);
        }
        Session session(options, maker());
        Grab(session, *grab);
    });
}
