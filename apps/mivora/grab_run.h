// grab_run.h - the acquisition of the command "grab"
#pragma once

#include "apps/common/command_failure.h"
#include "apps/common/continuous_grab.h"
#include "apps/common/frame_wait.h"
#include "apps/common/no_frame_cause.h"
#include "apps/mivora/camera_return.h"
#include "apps/mivora/grab_options.h"
#include "apps/mivora/grab_progress.h"
#include "apps/mivora/grab_recording.h"
#include "apps/mivora/grab_report.h"

#include <cstdint>
#include <optional>

class Session;

/// Takes frames of the session's open camera, records them, and follows the camera when it comes
/// back. One thread.
class GrabRun {
public:
    /// Prepares the recording, if there is to be one. Throws CommandFailure.
    GrabRun(Session& grabbingSession, const GrabOptions& grabOptions,
            CameraReturn& reconnectingCamera);

    /// Grabs until all frames are taken, the user interrupts, no frame comes or the recording is
    /// over; then waits until everything is written.
    GrabReport Run();

    /// Why a camera that was back could not be set up as before.
    const std::optional<CommandFailure>& Refusal() const { return refusal; }

private:
    bool IsDone() const;
    bool TakeFrames();
    void CountMissing(const TakenFrame& frame);
    void RecordRest();
    std::uint64_t PatienceMs() const;
    void Start();
    void Stop();
    bool GoOn();
    void TellOf(const NoFrameCause& cause, const char* consequence);
    bool Reconnect(std::uint64_t lastFrame);
    void WriteRest();
    std::string Ending() const;
    void ShowProgress();

    Session& session;
    const GrabOptions& options;
    CameraReturn& cameraReturn;
    ContinuousGrab grab;
    FrameWait wait;
    std::optional<GrabRecording> recording;
    ProgressDisplay display;
    GrabReport report;
    std::optional<CommandFailure> refusal;
    TakenFrame frame; // keeps its memory
    std::uint64_t taken = 0;
    std::uint64_t missing = 0; // before those taken, or damaged
    bool isWaitTold = false;   // since the last frame
    bool isThere = false;      // asked after a configuration change, and no frame since
};
