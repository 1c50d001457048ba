// camera_control.h - drives the grabber for a window that must not block
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
    kFailed,   ///< the grabber could not be initialised; nothing works
    kNoCamera, ///< none has been found yet; still looking
    kWaiting,  ///< the camera in use is gone; waiting for it
    kOpen,     ///< a camera is open but not acquiring
    kSnapping, ///< acquiring one image
    kLive,
};

/// What the control is doing.
struct ViewState {
    ViewStage stage = ViewStage::kStarting;
    std::string driver; ///< the grabber's description; empty before it is initialised
    std::string camera; ///< name of the camera in use
    ImageLayout layout; ///< of the next images; empty before the first acquisition
};

/// Called with no lock held.
class IControlListener {
public:
    virtual ~IControlListener() = default;
    /// The state has changed, a failure is to be shown, or a job waits for the window's thread. Any
    /// thread.
    virtual void OnControlChanged() = 0;
};

/// Runs the grabber's operations in order on its own thread. Operations that need windows run on
/// the thread that calls ServeWindowThread, which also creates and destroys this object; the
/// control's thread waits meanwhile, so that only one thread at a time uses the grabber. Once the
/// camera control dialog has been shown, cameras are opened and closed on the window's thread as
/// well, because the dialog depends on the open camera.
class CameraControl {
public:
    /// Loads the grabber module; throws CommandFailure. Nothing runs before Run is called.
    CameraControl(const AppOptions& appOptions, IGrabberMaker& maker, FramePipe& framePipe,
                  IControlListener& controlListener);
    /// Only after HasEnded returns true, or if Run was never called.
    ~CameraControl();
    CameraControl(const CameraControl&) = delete;
    CameraControl& operator=(const CameraControl&) = delete;

    /// Initialises the grabber, opens the camera selected by the options and starts live images.
    void Run();
    /// Stops and closes the camera; OnControlChanged is called once HasEnded returns true.
    void End();
    bool HasEnded() const { return hasEnded.load(); }

    // Orders. Each returns immediately; any thread.
    void Start();
    void Stop();
    /// Acquires one image, converted as in live view.
    void Snap();
    /// Cameras were connected or disconnected: reopens the camera in use if it is available.
    void CamerasChanged();
    void SaveConfiguration();
    /// Writes an image in the format given by the extension of the path.
    void SaveImage(std::shared_ptr<const GrabbedFrame> frame, const std::string& path);
    /// Passes lines to the control interface of the camera SDK, in order, until one fails; `done`
    /// receives the responses on the control's thread. Comments from '#' and empty lines are
    /// skipped.
    void RunScript(const std::string& lines, std::function<void(std::string)> done);

    // The grabber's dialogs.
    void SelectCamera(MV_WINDOW parent);
    void ShowCameraControl(MV_WINDOW parent);
    void ConfigureGrabber(MV_WINDOW parent);
    /// Creates a serial channel of the module if the grabber has none.
    void ConfigureChannel(MV_WINDOW parent);

    // For the window's thread.
    /// Runs the job that waits for this thread, if any.
    void ServeWindowThread();
    /// Failures of orders since the last call.
    std::vector<std::string> TakeFailures();
    ViewState State() const;
    std::uint64_t ReceiveErrors() { return session.Log().ReceiveErrors(); }
    /// For installing receivers and for offering messages to dialogs.
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

    // Used by the control's thread; what is atomic also by others.
    std::uint32_t cameraId = 0; // of the camera in use, 0 before the first
    bool wantsLive = true;
    std::atomic<bool> hasDialog{false}; // the camera control dialog has been shown
    std::atomic<bool> isGrabbing{false};
    std::atomic<bool> isPaused{false};   // until a change of the buffer layout has ended
    std::atomic<bool> isChanging{false}; // a change of the buffer layout is in progress
    std::atomic<bool> isChangeOrdered{false};
    std::atomic<bool> hasEnded{false};

    platform::Event work;       // an order is queued, or End was called
    platform::Event windowDone; // the job for the window's thread is done
    platform::Event pausable;   // not acquiring, or the window's thread is using the grabber

    mutable platform::Mutex mutex;
    std::deque<Job> jobs GUARDED_BY(mutex);
    std::optional<Job> windowJob GUARDED_BY(mutex);
    std::vector<std::string> failures GUARDED_BY(mutex);
    ViewState state GUARDED_BY(mutex);
    bool ending GUARDED_BY(mutex) = false;

    platform::Thread thread; // last: it uses all other members
};
