// camera_session.h - the camera that is served
#pragma once

#include "apps/common/continuous_grab.h"
#include "apps/common/feature_assignment.h"
#include "apps/common/session.h"
#include "apps/serve/camera_lister.h"
#include "apps/serve/feature_changes.h"
#include "apps/serve/followed_features.h"
#include "apps/serve/frame_holder.h"
#include "apps/serve/frame_taker.h"
#include "apps/serve/running_recording.h"
#include "apps/serve/state_board.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class IGrabberMaker;
struct AppOptions;

/// Called on the owner's thread.
class ICameraListener {
public:
    virtual ~ICameraListener() = default;
    /// A feature of the open camera has changed.
    virtual void OnFeatureChanged(const FeatureDescription& feature,
                                  const std::optional<ServiceValue>& value) = 0;
};

/// Opens, starts, stops and closes the camera, looks after it when it goes and comes back, and
/// keeps the board's state. All on one thread, the owner's; frames are taken on another one.
/// Operations throw RequestFailure when the state does not allow them, and CommandFailure.
class CameraSession {
public:
    /// What is served; all must outlive the session.
    struct Parts {
        StateBoard& board;
        FrameHolder& frames;
        ICameraListener& listener;
    };

    /// Initialises the grabber. `set` is what is assigned to features after each opening.
    CameraSession(const AppOptions& options, IGrabberMaker& maker,
                  const std::vector<std::string>& set, const Parts& parts);
    ~CameraSession();
    CameraSession(const CameraSession&) = delete;
    CameraSession& operator=(const CameraSession&) = delete;

    /// Opens the camera that `wanted` names, see FindCameras, in place of the one that is open.
    void Open(const std::string& wanted);
    /// Also one that is gone and would come back.
    void Close();
    void Start();
    void Stop();
    /// Takes one frame while nothing is grabbed.
    FramePointer Snap();

    /// Starts to record; the acquisition is started when it does not run.
    void StartRecording(const RecordingWish& wish);
    /// Ends the recording with what it has.
    void StopRecording();

    /// Runs `change` while no frames are grabbed, and goes on afterwards as before.
    void ChangeStopped(const std::function<void()>& change);

    /// A feature of the open camera was written, which is repeated when the camera was away.
    void NoteWritten(const std::string& module, const std::string& feature,
                     const std::string& value);

    /// Which features follow this one, as the opening has logged it.
    std::vector<FeatureChanges::Name> FollowersOf(const std::string& module,
                                                  const std::string& feature) const;

    bool IsOpen() const { return isOpen; }
    bool IsGrabbing() const { return taker.has_value(); }
    /// The features of the open camera. Throws RequestFailure without one.
    ServiceClient& Services();
    Session& Base() { return session; }
    /// Gets the lines of the log, of which those of an opening say what follows what. Any thread.
    void NoteLogLine(int level, const std::string& text) { followed.TakeLine(level, text); }

    /// Looks after what changes by itself; to be called about five times a second. `isListWanted`
    /// says whether somebody looks at the list of cameras.
    void Poll(bool isListWanted);
    /// The image may have another size or format now.
    void ReadImage();

private:
    void OpenActive();
    void StartGrabbing();
    void StopGrabbing(const std::string& why);
    void ListCameras();
    void LookForCamera();
    void LoseCamera();
    bool OpenAgain();
    void ReportChanges();
    void ReadTelemetry();
    void FinishRecording();
    void WriteAgain();
    void RequireOpen() const;

    IGrabberMaker& maker;
    StateBoard& board;
    FrameHolder& frames;
    ICameraListener& listener;
    // Called until the session has ended.
    FeatureChanges changes;
    FollowedFeatures followed;
    Session session;
    CameraLister lister;
    const std::vector<FeatureAssignment> assignments;

    std::vector<FeatureAssignment> written; // since the opening, in order

    bool isOpen = false;
    bool isGone = false;
    bool isToGrab = false; // also once the camera is back
    std::uint32_t uniqueId = 0;
    std::optional<ContinuousGrab> grab;
    std::optional<FrameTaker> taker;
    std::shared_ptr<RunningRecording> recording; // until it is closed
    std::vector<KnownCamera> cameras;
    std::uint64_t knownChanges = 0;
    std::uint64_t lastListing = 0;
    std::uint64_t lastTelemetry = 0;
};
