// watch_command.cpp - prints a grabber's events
#include "apps/common/command_line.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/json_text.h"
#include "apps/common/session.h"
#include "apps/mivora/commands.h"
#include "mivora/grabber.h"
#include "platform/clock.h"
#include "platform/interrupt.h"
#include "platform/printable_text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

// Polling interval while no camera is open, because its arrival may raise no event.
constexpr std::uint64_t kWatchForCameraMs = 1000;

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

/// Prints events and follows the camera: the grabber reports events only of the camera opened last,
/// and a camera that was disconnected has to be reopened.
class Watch {
public:
    Watch(Session& openSession, std::uint64_t timeLimitMs,
          const std::vector<FeatureAssignment>& assignmentsToApply, bool printJson)
        : session(openSession),
          grabber(openSession.Grabber()),
          limitMs(timeLimitMs),
          assignments(assignmentsToApply),
          isJson(printJson) {}

    void Run() {
        if (Choose()) {
            session.OpenActCamera();
            ApplyFeatureAssignments(session, assignments);
            Remember();
            PrintStart("watching " + camera);
        } else {
            const std::string configured = session.ConfiguredCamera();
            const std::string text =
                configured.empty() ? "there is no camera"
                                   : "the configured camera \"" + configured + "\" is not there";
            PrintStart("watching; " + platform::PrintableText(text) + " yet");
        }
        std::fflush(stdout);
        while (!platform::InterruptRequested() && !std::ferror(stdout)) {
            const std::uint64_t elapsedMs = ElapsedMs();
            if (elapsedMs >= limitMs) {
                break;
            }
            const std::uint64_t restMs = limitMs - elapsedMs;
            GrabberEvents events;
            session.Events().WaitFor(
                [&] {
                    events = session.Events().Take();
                    return events.camCfgChange != 0 || !events.camCntrl.empty();
                },
                isOpen ? restMs : std::min(restMs, kWatchForCameraMs));
            Print(events);
            if (events.camCfgChange != 0 || !isOpen) {
                LookForCamera();
            }
        }
    }

private:
    void LookForCamera() {
        const bool wasOpen = isOpen;
        isOpen = false;
        session.Check("RefreshCameraList", grabber.RefreshCameraList());
        if (Choose() && grabber.OpenActCamera() == MV_OK) {
            ApplyFeatureAssignments(session, assignments);
            Remember();
            PrintLine("there", camera + " is there", CameraMembers());
        } else if (wasOpen) {
            PrintLine("gone", camera + " is gone", CameraMembers());
        }
        std::fflush(stdout);
    }

    /// Makes the watched camera active, or while there has been none the one to watch.
    bool Choose() {
        if (uniqueId) {
            const std::int32_t index = grabber.GetCameraIndexByCameraUniqueID(*uniqueId);
            return index >= 0 && grabber.SetActCameraIndex(index) == MV_OK;
        }
        try {
            session.ChooseCamera();
            return true;
        } catch (const CameraMissing&) {
            return false;
        }
    }

    void Remember() {
        isOpen = true;
        uniqueId = grabber.GetActCamera()->GetCameraUniqueID();
        camera = session.ActCameraText();
    }

    void Print(const GrabberEvents& events) const {
        for (std::uint64_t i = 0; i < events.camCfgChange; ++i) {
            PrintLine("configuration", "camera configuration changed");
        }
        for (const std::uint32_t code : events.camCntrl) {
            const std::string name = ControlEventName(code);
            PrintLine("control", "camera control " + std::to_string(code) + " (" + name + ")",
                      {{"code", code}, {"name", name}});
        }
        std::fflush(stdout);
    }

    std::vector<JsonMember> CameraMembers() const {
        return {{"camera", camera.empty() ? JsonValue(nullptr) : JsonValue(camera)},
                {"uniqueId", uniqueId ? JsonValue(*uniqueId) : JsonValue(nullptr)}};
    }

    void PrintStart(const std::string& text) const {
        if (isJson) {
            PrintLine("watching", text, CameraMembers());
        } else {
            std::printf("%s\n", text.c_str());
        }
    }

    void PrintLine(const char* event, const std::string& text,
                   const std::vector<JsonMember>& more = {}) const {
        const double seconds = static_cast<double>(ElapsedNs()) / 1e9;
        if (isJson) {
            std::vector<JsonMember> members = {{"seconds", seconds}, {"event", event}};
            members.insert(members.end(), more.begin(), more.end());
            PrintReport(members);
        } else {
            std::printf("%10.3f %s\n", seconds, text.c_str());
        }
    }

    std::uint64_t ElapsedNs() const { return platform::MonotonicNanoseconds() - begin; }
    std::uint64_t ElapsedMs() const { return ElapsedNs() / 1000000; }

    Session& session;
    CMivoraGrabber& grabber;
    const std::uint64_t limitMs;
    const std::vector<FeatureAssignment>& assignments;
    const bool isJson;
    const std::uint64_t begin = platform::MonotonicNanoseconds();
    std::optional<std::uint32_t> uniqueId; // of the watched camera, once there is one
    std::string camera;                    // its description for messages
    bool isOpen = false;
};

} // namespace

void AddWatchCommand(CommandLine& program, const AppOptions& options, const MakerSource& maker) {
    Command command = program.AddCommand(
        "watch", "Print configuration-change and camera-control events as they come");
    const auto limitMs = std::make_shared<std::uint64_t>(std::numeric_limits<std::uint64_t>::max());
    command.AddOption("--for", *limitMs, "End after so many milliseconds instead of at Ctrl-C")
        .Check(CountProblem)
        .TypeName("MS");
    command.SetFooter("Every line begins with the seconds since the start. After a change of the\n"
                      "configuration the camera is looked for and opened anew.\n\n"
                      "Example:\n  mivora --camera 0 watch --for 60000\n");
    const auto set = std::make_shared<std::vector<std::string>>();
    AddSetOption(command, *set);
    const auto json = std::make_shared<bool>(false);
    command.AddJson(*json);
    command.OnRun([&options, maker, limitMs, set, json] {
        Session session(options, maker());
        const std::vector<FeatureAssignment> assignments = ParseFeatureAssignments(session, *set);
        platform::InstallInterruptHandler();
        session.InitWithCamera();
        Watch(session, *limitMs, assignments, *json).Run();
    });
}
