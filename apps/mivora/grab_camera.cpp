// grab_camera.cpp - a camera of the command "grab"
#include "apps/mivora/grab_camera.h"

#include "apps/common/command_failure.h"
#include "apps/common/format_handling.h"
#include "apps/common/no_frame_cause.h"

#include <memory>

namespace {

std::unique_ptr<Session> MakeSession(const AppOptions& options, IGrabberMaker& maker,
                                     SessionShare* share) {
    return share ? std::make_unique<Session>(options, maker, *share)
                 : std::make_unique<Session>(options, maker);
}

} // namespace

GrabCamera::GrabCamera(const AppOptions& appOptions, const GrabOptions& grabOptions,
                       IGrabberMaker& maker, SessionShare* share)
    : app(appOptions),
      options(grabOptions),
      ownedSession(MakeSession(app, maker, share)),
      session(*ownedSession),
      assignments(ParseFeatureAssignments(session, options.set)),
      cameraReturn(session, assignments) {
    options.isPaced = app.asFastAsPossible;
    Open();
}

void GrabCamera::Open() {
    if (!options.reconnect) {
        session.OpenCamera();
    } else if (!cameraReturn.OpenFirst()) {
        throw CommandFailure("interrupted before there was a camera");
    }
    ApplyFeatureAssignments(session, assignments);
    if (const auto format = ReadPixelFormat(session.OptionalServices())) {
        WarnOfFormat(*format, DescribeImage(session.CheckedMode()));
    }
    if (options.IsTriggered() && session.OptionalServices() &&
        !FindTriggerWait(*session.OptionalServices())) {
        throw CommandFailure(session.ActCameraText() +
                             " waits for no trigger: its TriggerMode is not On (--set "
                             "Camera/TriggerMode=On)");
    }
    if (options.reconnect) {
        cameraReturn.KeepSettings();
    }
}

void GrabCamera::Prepare(const std::string& output, const GrabShare& share, std::size_t number) {
    options.output = output;
    run.emplace(session, options, cameraReturn, share, number);
}

void GrabCamera::ThrowOutcome() {
    if (run->Refusal()) {
        throw *run->Refusal();
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
    if (report.isGivenUp) {
        throw CommandFailure("ended because of another camera after " +
                                 std::to_string(report.account.taken) + " frames",
                             details);
    }
    if (!reason.empty()) {
        throw FramesMissing(reason);
    }
}
