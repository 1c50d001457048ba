// grab_run.h - the acquisition of the command "grab"
#pragma once

#include "apps/common/command_failure.h"
#include "apps/common/continuous_grab.h"
#include "apps/common/frame_wait.h"
#include "apps/common/no_frame_cause.h"
#include "apps/mivora/camera_return.h"
#include "apps/mivora/grab_console.h"
#include "apps/mivora/grab_options.h"
#include "apps/mivora/grab_recording.h"
#include "apps/mivora/grab_report.h"
#include "apps/mivora/start_gate.h"

#include <cstddef>
#include <cstdint>
#include <optional>

class Session;

/// What the runs of several cameras share; one camera's run has it for itself.
struct GrabShare {
    GrabConsole& console;
    StartGate& gate;
    std::uint64_t unixMinusHostNs = 0; ///< from the times of frames to those since 1970
};

/// Takes frames of the session's open camera, records them, and follows the camera when it comes
/// back. One thread at a time.
class GrabRun {
public:
    /// Prepares the recording, if there is to be one. `runNumber` is this run's number on the
    /// console. Throws CommandFailure.
    GrabRun(Session& grabbingSession, const GrabOptions& grabOptions,
            CameraReturn& reconnectingCamera, const GrabShare& sharedParts,
            std::size_t runNumber = 0);

    /// Starts together with the other runs and grabs until all frames are taken, the user
    /// interrupts, no frame comes, the recording is over or another run has failed; then waits
    /// until everything is written. Throws CommandFailure.
    GrabReport Run();

    /// Why a camera that was back could not be set up as before.
    const std::optional<CommandFailure>& Refusal() const { return refusal; }

private:
    bool StartTogether();
    bool IsAllTaken() const;
    bool IsDone() const;
    bool TakeFrames();
    void Take(FrameResult result);
    void TriggerWhenDue();
    std::uint64_t SliceMs() const;
    void CountMissing(const TakenFrame& frame);
    void RecordRest();
    bool IsFirstAwaited() const;
    std::uint64_t TimeoutMs() const;
    std::uint64_t PatienceMs() const;
    void Start();
    void Stop();
    bool GoOn();
    void TellOf(const NoFrameCause& cause, const char* consequence);
    bool Reconnect(std::uint64_t lastFrame);
    void WriteRest();
    std::string Ending() const;
    std::string OfCamera() const;
    void ShowProgress();

    Session& session;
    const GrabOptions& options;
    CameraReturn& cameraReturn;
    const GrabShare share;
    const std::size_t number;
    ContinuousGrab grab;
    FrameWait wait;
    std::optional<GrabRecording> recording;
    GrabReport report;
    std::optional<CommandFailure> refusal;
    TakenFrame frame; // keeps its memory
    std::uint64_t taken = 0;
    std::uint64_t missing = 0;     // before those taken, or damaged
    bool isWaitTold = false;       // since the last frame
    std::uint64_t nextTrigger = 0; // monotonic; 0: none has been given
    unsigned returns = 0;          // of the camera, without a frame since
    bool isThere = false;          // asked after a configuration change, and no frame since
};
