// grab_command.cpp - continuous acquisition
#include "apps/common/command_line.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/image_writer.h"
#include "apps/mivora/commands.h"
#include "apps/mivora/grab_camera.h"
#include "apps/mivora/grab_options.h"
#include "apps/mivora/grab_several.h"
#include "apps/recording/host_clock.h"
#include "platform/console.h"
#include "platform/interrupt.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

void GrabFromOne(const AppOptions& app, const GrabOptions& options, IGrabberMaker& maker) {
    GrabCamera camera(app, options, maker);
    GrabConsole console(options.progress, 1);
    StartGate gate(1);
    camera.Prepare(options.output, {console, gate, UnixMinusHostNanoseconds()});
    camera.Run();
    PrintGrabReport(options, camera.Report().Json(), camera.Report().Text());
    camera.ThrowOutcome();
}

void Grab(const AppOptions& app, const GrabOptions& options, IGrabberMaker& maker) {
    platform::InstallInterruptHandler(options.IsRecorded() ? 2 : 1);
    if (options.IsStream()) {
        platform::ReportBrokenPipes();
    }
    if (app.cameras.size() > 1) {
        GrabFromSeveral(app, options, maker);
    } else {
        GrabFromOne(app, options, maker);
    }
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
    "With several --camera options one program grabs from all of these cameras: a folder for each\n"
    "in the recording, an account with a line for each, and status 3 when frames of any are\n"
    "missing.\n"
    "\n"
    "Examples:\n"
    "  mivora grab --frames 100\n"
    "  mivora grab --frames 100 --set Camera/Width=640 --set Camera/Height=480\n"
    "  mivora grab --frames 50 -o images --format pnm --buffers 16\n"
    "  mivora grab --frames 10000 -o run1 --format stack --queue 2000 --when-full stop\n"
    "  mivora --camera left --camera right grab --frames 500 -o pair --format stack\n"
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
    CommandOption triggerEvery =
        command
            .AddOption("--trigger-every", grab->triggerEveryMs,
                       "Give each camera a software trigger every so many milliseconds")
            .Check(PositiveCountProblem)
            .TypeName("MS");
    command
        .AddOption("--start", grab->start,
                   "How several cameras start: as close together as this program can, or by a "
                   "trigger that they wait for, however long; software if not given")
        .OneOf({kStartBySoftware, kStartByTrigger})
        .Excludes(triggerEvery);
    command.AddFlag("--reconnect", grab->reconnect,
                    "Wait for a camera that is not there or gone, set it up as it was and go on");
    command.AddJson(grab->json);
    AddSetOption(command, grab->set);
    command.SetFooter(kGrabFooter);
    command.OnRun([&options, maker, grab] {
        if (const std::string problem = grab->Problem(options.cameras.size()); !problem.empty()) {
            throw BadUsage(problem);
        }
        Grab(options, *grab, maker());
    });
}
