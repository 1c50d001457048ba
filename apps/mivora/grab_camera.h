// grab_camera.h - a camera of the command "grab"
#pragma once

#include "apps/common/app_options.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/session.h"
#include "apps/mivora/camera_return.h"
#include "apps/mivora/grab_options.h"
#include "apps/mivora/grab_report.h"
#include "apps/mivora/grab_run.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class IGrabberMaker;

/// An open camera, set up as the options say, with its acquisition. One thread at a time.
class GrabCamera {
public:
    /// Opens the camera; with `share` as one of several. Waits for it if the options want that.
    /// Throws CommandFailure.
    GrabCamera(const AppOptions& appOptions, const GrabOptions& grabOptions, IGrabberMaker& maker,
               SessionShare* share = nullptr);
    GrabCamera(const GrabCamera&) = delete;
    GrabCamera& operator=(const GrabCamera&) = delete;

    Session& OpenSession() { return session; }
    /// Prepares the recording, into `output`, if there is to be one. Throws CommandFailure.
    void Prepare(const std::string& output, const GrabShare& share, std::size_t number = 0);
    /// See GrabRun::Run.
    void Run() { report = run->Run(); }
    /// Throws unless what was wanted has been done.
    void ThrowOutcome();

    const GrabReport& Report() const { return report; }

private:
    void Open();

    const AppOptions app;
    GrabOptions options;
    const std::unique_ptr<Session> ownedSession;
    Session& session;
    const std::vector<FeatureAssignment> assignments;
    CameraReturn cameraReturn;
    std::optional<GrabRun> run;
    GrabReport report;
};
