// bench.cpp - the open camera that the checks work with
#include "apps/selftest/bench.h"

#include "apps/common/command_failure.h"
#include "apps/common/service_client.h"
#include "mivora/grabber.h"

#include <algorithm>
#include <atomic>

namespace {

constexpr std::uint32_t kContinuousMode = 1;
constexpr std::size_t kMostReasons = 3;
/// What a check may change; the time base first, which converts the others.
constexpr std::uint32_t kKeptParameters[] = {
    MVGF_TIME_BASE,     MVGF_TIMER_MODE,       MVGF_TIMER_VALUES, MVGF_TIMER_ENABLED,
    MVGF_TRIGGER_DELAY, MVGF_TRIGGER_POLARITY, MVGF_GAIN,         MVGF_OFFSET,
    MVGF_STROBE_VALUES, MVGF_STROBE_POLARITY};

std::string SettingText(const SettingReport& setting) {
    return setting.module + "/" + setting.feature +
           (setting.selector.empty() ? "" : "[" + setting.selector + "]");
}

/// The settings that the camera has and that are not those of the file.
std::vector<std::string> ChangedSettings(const SettingsOutcome& outcome) {
    std::vector<std::string> lines;
    for (const SettingReport& setting : outcome.settings) {
        if (setting.result == MV_SERVICE_OK && !setting.present.empty() &&
            setting.present != setting.value) {
            lines.push_back(SettingText(setting) + " " + setting.present + " -> " + setting.value);
        }
    }
    return lines;
}

/// Counts the frames that the module receives in error during its lifetime.
class BadFrames {
public:
    BadFrames(Session& grabbingSession, IMivoraModuleServices* offered)
        : session(grabbingSession),
          services(offered),
          before(grabbingSession.Log().ReceiveErrors()) {
        if (services) {
            services->InstallFrameReceiver(&BadFrames::Receive, this, nullptr);
        }
    }
    ~BadFrames() {
        if (services) {
            services->InstallFrameReceiver(nullptr, nullptr, nullptr);
        }
    }
    BadFrames(const BadFrames&) = delete;
    BadFrames& operator=(const BadFrames&) = delete;

    /// Empty when there is none.
    std::string Text() const {
        const std::uint64_t count = session.Log().ReceiveErrors() - before;
        if (count == 0) {
            return "";
        }
        const std::int32_t last = status.load();
        return std::to_string(count) + " received in error" +
               (last == MV_FRAME_COMPLETE
                    ? ""
                    : ", with status " + std::to_string(last) +
                          (last == MV_FRAME_INCOMPLETE ? " (parts are missing)" : ""));
    }

private:
    static void Receive(const MV_FRAME_INFO* frame, void* self) {
        if (frame->status != MV_FRAME_COMPLETE) {
            static_cast<BadFrames*>(self)->status = frame->status;
        }
    }

    Session& session;
    IMivoraModuleServices* const services;
    const std::uint64_t before;
    std::atomic<std::int32_t> status{MV_FRAME_COMPLETE};
};

} // namespace

void Require(bool condition, const std::string& text) {
    if (!condition) {
        throw CommandFailure(text);
    }
}

std::string JoinReasons(const std::vector<std::string>& reasons) {
    std::string text;
    for (std::size_t i = 0; i < reasons.size() && i < kMostReasons; ++i) {
        text += (i == 0 ? "" : "; ") + reasons[i];
    }
    return reasons.size() <= kMostReasons
               ? text
               : text + "; and " + std::to_string(reasons.size() - kMostReasons) + " more";
}

std::vector<std::string> RefusedSettings(const SettingsOutcome& outcome) {
    std::vector<std::string> lines;
    for (const SettingReport& setting : outcome.settings) {
        if (setting.result != MV_SERVICE_OK) {
            lines.push_back(
                SettingText(setting) + "=" + setting.value + ": " +
                (setting.reason.empty() ? ServiceResultText(setting.result) : setting.reason));
        }
    }
    return lines;
}

SelftestBench::SelftestBench(Session& openSession, IMivoraModuleServices* offered,
                             std::uint64_t frameTimeoutMs)
    : session(openSession),
      services(offered),
      timeoutMs(frameTimeoutMs),
      directory(platform::CreateTemporaryDirectory("mivora-")) {
    Require(!directory.empty(), "cannot create a directory for temporary files");
}

SelftestBench::~SelftestBench() {
    platform::RemoveDirectoryTree(directory);
}

ServiceClient& SelftestBench::Features() {
    Services();
    return session.Services();
}

IMivoraModuleServices& SelftestBench::Services() {
    if (!services) {
        throw SelftestNotApplicable("the grabber module offers no access to features");
    }
    return *services;
}

void SelftestBench::RequireFrames(std::uint32_t capability) {
    std::uint64_t capabilities = 0;
    if (Grabber().GetGrabberParam(MVGF_ACQUISITION_CAPABILITIES, &capabilities, nullptr) == MV_OK &&
        (capabilities & capability) == 0) {
        throw SelftestNotApplicable("the grabber has no acquisition of this kind");
    }
    const auto mode =
        services ? session.Services().TryReadFeature("Camera", "TriggerMode") : std::nullopt;
    if (mode && mode->text == "On") {
        throw SelftestNotApplicable("the camera waits for a trigger (Camera/TriggerMode)");
    }
}

void SelftestBench::Expect(const std::string& operation, MV_ERRCODE code,
                           const std::string& object) {
    if (code != MV_OK) {
        session.Check(operation, code, object);
    }
    const std::deque<std::string> lines = session.Log().TakeErrors();
    Require(lines.empty(), operation + " for " + object +
                               " returns 0 and logs: " + (lines.empty() ? "" : lines.front()));
}

void SelftestBench::TakeFrames(std::uint64_t buffers, std::uint64_t frames) {
    const std::string object = std::to_string(buffers) + " buffers";
    session.PrepareBuffers(buffers, object);
    BadFrames bad(session, services);
    EventRecorder& events = session.Events();
    events.ResetFrames();
    Expect("Snap", Grabber().Snap(kContinuousMode), "mode 1 with " + object);
    Require(Grabber().GetAcquisitionState() == kContinuousMode,
            "the acquisition state is " + std::to_string(Grabber().GetAcquisitionState()) +
                " in continuous acquisition");
    std::uint64_t seen = 0;
    while (seen < frames) {
        // Each frame has the whole time.
        events.WaitFor([&] { return events.Frames() > seen; }, timeoutMs);
        const std::uint64_t now = events.Frames();
        if (now == seen) {
            break;
        }
        seen = now;
    }
    const std::string problem = bad.Text();
    Expect("StopSnap", Grabber().StopSnap(), object);
    Require(Grabber().GetAcquisitionState() == 0, "the acquisition does not stop");
    Require(seen >= frames, std::to_string(seen) + " of " + std::to_string(frames) +
                                " frames came with " + object + ", then none for " +
                                std::to_string(timeoutMs) + " ms" +
                                (problem.empty() ? "" : "; " + problem));
    Require(problem.empty(), problem);
}

MV_ERRCODE SelftestBench::SetParameter(std::uint32_t id, std::uint64_t first,
                                       std::uint64_t second) {
    std::uint64_t least = 0;
    std::uint64_t most = 0;
    if (Grabber().GetGrabberParamLimits(id, nullptr, nullptr, &least, &most) == MV_OK &&
        least <= most && (second < least || second > most)) {
        Grabber().SetGrabberParam(id, first, std::clamp(second, least, most));
    }
    return Grabber().SetGrabberParam(id, first, second);
}

void SelftestBench::Recover() {
    Grabber().StopSnap();
    if (!Grabber().IsCameraOpen()) {
        session.OpenActCamera();
    }
    session.Log().TakeErrors();
}

void SelftestBench::KeepSettings() {
    for (const std::uint32_t id : kKeptParameters) {
        Parameter parameter{id, 0, 0};
        if (Grabber().GetGrabberParam(id, &parameter.first, &parameter.second) == MV_OK) {
            parameters.push_back(parameter);
        }
    }
    if (!services) {
        return;
    }
    try {
        const SettingsOutcome outcome = session.Services().SaveSettings(PathOf("kept.json"));
        isKept = platform::PathExists(PathOf("kept.json")); // also when some are not in it
        keptProblem = JoinReasons(RefusedSettings(outcome));
    } catch (const CommandFailure& failure) {
        keptProblem = failure.what();
    }
}

std::string SelftestBench::Restore() {
    Recover();
    for (const Parameter& parameter : parameters) {
        std::uint64_t first = 0;
        std::uint64_t second = 0;
        if (Grabber().GetGrabberParam(parameter.id, &first, &second) == MV_OK &&
            (first != parameter.first || second != parameter.second)) {
            SetParameter(parameter.id, parameter.first, parameter.second);
        }
    }
    if (!isKept) {
        throw SelftestNotApplicable(
            "the camera's settings cannot be saved: " +
            (keptProblem.empty() ? "the module offers no access to features" : keptProblem));
    }
    ServiceClient& features = session.Services();
    const SettingsOutcome written = features.LoadSettings(PathOf("kept.json"), false);
    Require(written.isComplete,
            "not all settings could be put back: " + JoinReasons(RefusedSettings(written)));
    const SettingsOutcome compared = features.LoadSettings(PathOf("kept.json"), true);
    std::vector<std::string> left = RefusedSettings(compared);
    const std::vector<std::string> changed = ChangedSettings(compared);
    left.insert(left.end(), changed.begin(), changed.end());
    Require(left.empty(), "settings are not as they were: " + JoinReasons(left));
    return std::to_string(written.settings.size()) + " settings are as they were" +
           (keptProblem.empty() ? "" : "; not saved: " + keptProblem);
}
