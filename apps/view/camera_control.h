// camera_control.h - works the grabber for a window that must not wait
#pragma once

#include "apps/common/app_options.h"
#include "apps/common/host_image.h"
#include "apps/common/sdk_control.h"
#include "apps/common/session.h"
#include "apps/view/frame_pipe.h"
#include "mivora/types.h"
#include "platform/event.h"
#include "platform/mutex.h"
#include "platform/thread.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class IGrabberMaker;

enum class ViewStage {
    kStarting,
    kFailed,   ///< the grabber cannot be initialised; nothing works
    kNoCamera, ///< none was there yet, one is looked for
    kWaiting,  ///< the camera in use is gone and is waited for
    kOpen,     ///< a camera is open, no images come
    kSnapping, ///< one image is on its way
    kLive,
};

/// How things stand.
struct ViewState {
    ViewStage stage = ViewStage::kStarting;
    std::string driver; ///< what the grabber says of itself; empty before it is initialised
    std::string camera; ///< name of the camera in use
    ImageLayout layout; ///< of the images to come; empty before the first
};

/// Called without a lock held.
class IControlListener {
public:
    virtual ~IControlListener() = default;
    /// Something is new: the state, a text to be shown, a job for the window's thread. Any thread.
    virtual void OnControlChanged() = 0;
};

/// Runs the grabber's operations in order on a thread of its own. What needs windows runs on the
/// thread that calls ServeWindowThread, which is also the one that makes and destroys this object;
/// the control's thread waits meanwhile, so that only one thread at a time is in the grabber. Once
/// the camera control dialog has been shown, cameras are opened and closed there too, since the
/// dialog lives on what is open.
class CameraControl {
public:
    /// Loads the grabber module; throws CommandFailure. Nothing else runs before Run.
    CameraControl(const AppOptions& appOptions, IGrabberMaker& maker, FramePipe& framePipe,
                  IControlListener& controlListener);
    /// To be called when HasEnded, or when Run was never called.
    ~CameraControl();
    CameraControl(const CameraControl&) = delete;
    CameraControl& operator=(const CameraControl&) = delete;

    /// Initialises the grabber, opens the camera that the options name and shows it live.
    void Run();
    /// Stops and closes the camera; OnControlChanged tells when HasEnded is true.
    void End();
    bool HasEnded() const { return hasEnded.load(); }

    // ---- orders; each returns at once, any thread
    // ------------------------------------------------
    void Start();
    void Stop();
    /// One image, converted as in live view.
    void Snap();
    /// The host tells that cameras came or went: opens the camera in use again when it is there.
    void CamerasChanged();
    void SaveConfiguration();
    /// Writes an image in the format of the name's ending.
    void SaveImage(std::shared_ptr<const GrabbedFrame> frame, const std::string& path);
    /// Passes lines to the control interface of the camera SDK, in order, until one fails; `done`
    /// gets the answers on the control's thread. Comments from '#' and empty lines are left out.
    void RunScript(const std::string& lines, std::function<void(std::string)> done);

    // The grabber's dialogs.
    void SelectCamera(MV_WINDOW parent);
    void ShowCameraControl(MV_WINDOW parent);
    void ConfigureGrabber(MV_WINDOW parent);
    /// A serial channel of the module is made when the grabber has none.
    void ConfigureChannel(MV_WINDOW parent);

    // ---- for the window's thread
    // -----------------------------------------------------------------
    /// Runs the job that waits for this thread, if there is one.
    void ServeWindowThread();
    /// What went wrong with orders since the last call.
    std::vector<std::string> TakeFailures();
    ViewState State() const;
    std::uint64_t ReceiveErrors() { return session.Log().ReceiveErrors(); }
    /// For receivers and for offering messages to dialogs.
    CMivoraGrabber& Grabber() { return session.Grabber(); }

private:
    using Job = std::function<void()>;

    static std::uint32_t OnCameraControl(std::uint32_t code, void* self);

    void Order(Job job, bool first = false);
    void Work();
    void RunJob(const Job& job);
    std::optional<Job> NextJob();
    void OnWindowThread(const Job& job);
    void OnDialogThread(const Job& job);

    void Initialise();
    void OpenFirst();
    void StartGrabbing(std::uint32_t mode);
    void StopGrabbing();
    bool ChooseCamera();
    void OpenAgain();
    void LookAtSnap();
    void Finish();
    void PauseForChange();
    void RunDialog(const char* operation, const std::function<MV_ERRCODE()>& dialog);
    void SetStage(ViewStage stage);
    void SetOpened();
    void AddFailure(const std::string& text);

    const AppOptions options;
    FramePipe& pipe;
    IControlListener& listener;
    Session session;
    SdkControl sdkControl;

    // Of the control's thread.
    std::uint32_t cameraId = 0; // of the camera in use, 0 before the first
    bool wantsLive = true;
    std::atomic<bool> hasDialog{false}; // the camera control dialog was shown once
    std::atomic<bool> isGrabbing{false};
    std::atomic<bool> isPaused{false};   // until a change of the buffers' layout is over
    std::atomic<bool> isChanging{false}; // such a change is under way
    std::atomic<bool> isChangeOrdered{false};
    std::atomic<bool> hasEnded{false};

    platform::Event work;       // an order waits, or the end
    platform::Event windowDone; // the job of the window's thread is done
    platform::Event pausable;   // no images come, or the window's thread has the grabber

    mutable platform::Mutex mutex;
    std::deque<Job> jobs GUARDED_BY(mutex);
    std::optional<Job> windowJob GUARDED_BY(mutex);
    std::vector<std::string> failures GUARDED_BY(mutex);
    ViewState state GUARDED_BY(mutex);
    bool ending GUARDED_BY(mutex) = false;

    platform::Thread thread; // last: it uses all of the above
};
