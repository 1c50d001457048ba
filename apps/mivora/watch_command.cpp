// watch_command.cpp - prints a grabber's events
#include "apps/common/command_line.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "mivora/grabber.h"
#include "platform/clock.h"
#include "platform/interrupt.h"

#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>

namespace {

const char* ControlEventName(std::uint32_t code) {
    switch (code) {
    case kMvEventCloseRequest:
        return "close request";
    case kMvEventTimingChanged:
        return "timing changed";
    case kMvEventBufferImpactBegins:
        return "change of the buffer layout begins";
    case kMvEventBufferImpactEnded:
        return "change of the buffer layout ended";
    default:
        return "unknown event";
    }
}

void Print(const GrabberEvents& events, double seconds) {
    for (std::uint64_t i = 0; i < events.camCfgChange; ++i) {
        std::printf("%10.3f camera configuration changed\n", seconds);
    }
    for (const std::uint32_t code : events.camCntrl) {
        std::printf("%10.3f camera control %u (%s)\n", seconds, static_cast<unsigned>(code),
                    ControlEventName(code));
    }
    std::fflush(stdout);
}

void Watch(Session& session, std::uint64_t limitMs) {
    platform::InstallInterruptHandler();
    session.InitWithCamera();
    // A grabber tells of the camera that it has open; without one it watches all the same.
    if (session.Grabber().GetActCamera() || session.Grabber().SetActCameraIndex(0) == MV_OK) {
        session.OpenActCamera();
        std::printf("watching %s\n", session.ActCameraText().c_str());
    } else {
        std::printf("watching; there is no camera yet\n");
    }
    std::fflush(stdout);
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    const auto elapsedNs = [begin] {
        return platform::MonotonicNanoseconds() - begin;
    };
    while (!platform::InterruptRequested() && elapsedNs() / 1000000 < limitMs) {
        GrabberEvents events;
        session.Events().WaitFor(
            [&] {
                events = session.Events().Take();
                return events.camCfgChange != 0 || !events.camCntrl.empty();
            },
            limitMs - elapsedNs() / 1000000);
        Print(events, static_cast<double>(elapsedNs()) / 1e9);
    }
}

} // namespace

void AddWatchCommand(CLI::App& app, const AppOptions& options, const MakerSource& maker) {
    CLI::App* const command = app.add_subcommand(
        "watch", "Print configuration-change and camera-control events as they come");
    const auto limitMs = std::make_shared<std::optional<std::uint64_t>>();
    command->add_option("--for", *limitMs, "End after so many milliseconds instead of at Ctrl-C")
        ->type_name("MS");
    command->footer("Every line begins with the seconds since the start.\n\n"
                    "Example:\n  mivora --camera 0 watch --for 60000\n");
    command->callback([&options, maker, limitMs] {
        Session session(options, maker());
        Watch(session, limitMs->value_or(std::numeric_limits<std::uint64_t>::max()));
    });
}
