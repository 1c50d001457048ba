// camera_control.cpp - drives the grabber for a window that must not block
#include "apps/view/camera_control.h"

#include "apps/common/command_failure.h"
#include "apps/common/image_writer.h"
#include "apps/view/script_lines.h"
#include "mivora/grabber.h"

#include <exception>
#include <utility>

namespace {

constexpr std::uint32_t kContinuous = 1;
constexpr std::uint32_t kOneImage = 2;
constexpr std::uint64_t kBuffers = 8;
constexpr std::uint32_t kCameraChannelType = 1;
constexpr std::uint32_t kLookForCameraMs = 2000;
constexpr std::uint32_t kLookAtSnapMs = 50;

/// A configuration that is not there yet is made when it is saved.
AppOptions WithFileThatMayBeNew(AppOptions options) {
    options.mayBeNew = true;
    return options;
}

} // namespace

CameraControl::CameraControl(const AppOptions& appOptions, IGrabberMaker& maker,
                             FramePipe& framePipe, IControlListener& controlListener)
    : options(WithFileThatMayBeNew(appOptions)),
      pipe(framePipe),
      listener(controlListener),
      session(options, maker) {
    CMivoraGrabber& grabber = session.Grabber();
    session.Events().SetFrameHook([this, &grabber](std::uint64_t index) {
        if (const void* const image = grabber.GetFrameBuffer(index)) {
            pipe.Push(image);
        }
        grabber.ReleaseFrameBuffer(index);
    });
    grabber.InstCamCntrlCallBack(OnCameraControl, this);
    pausable.Set();
}

CameraControl::~CameraControl() {
    thread.Join();
    session.Grabber().InstCamCntrlCallBack(nullptr, nullptr);
}

void CameraControl::Run() {
    Order([this] { Initialise(); });
    const auto procedure = [](void* self) {
        static_cast<CameraControl*>(self)->Work();
    };
    thread = platform::Thread::Start(procedure, this, 0);
    if (!thread.IsJoinable()) {
        hasEnded = true;
        throw CommandFailure("cannot start a thread for the camera");
    }
}

void CameraControl::End() {
    {
        const platform::MutexLock lock(mutex);
        ending = true;
    }
    work.Set();
}

void CameraControl::Order(Job job, bool first) {
    {
        const platform::MutexLock lock(mutex);
        jobs.insert(first ? jobs.begin() : jobs.end(), std::move(job));
    }
    work.Set();
}

std::optional<CameraControl::Job> CameraControl::NextJob() {
    const platform::MutexLock lock(mutex);
    work.Reset();
    if (ending) {
        return [this] {
            Finish();
        };
    }
    if (jobs.empty()) {
        return std::nullopt;
    }
    Job job = std::move(jobs.front());
    jobs.pop_front();
    work.Set();
    return job;
}

void CameraControl::Work() {
    while (!hasEnded) {
        const ViewStage stage = State().stage;
        const bool looks = stage == ViewStage::kNoCamera || stage == ViewStage::kWaiting;
        work.Wait(looks                           ? kLookForCameraMs
                  : stage == ViewStage::kSnapping ? kLookAtSnapMs
                                                  : platform::kInfinite);
        if (const std::optional<Job> job = NextJob()) {
            RunJob(*job);
        } else if (looks) {
            RunJob([this] { OpenAgain(); });
        } else if (stage == ViewStage::kSnapping) {
            LookAtSnap();
        }
        session.Events().Take(); // nothing here reads the events; keeps them from piling up
    }
    listener.OnControlChanged();
}

void CameraControl::RunJob(const Job& job) {
    try {
        job();
    } catch (const std::exception& error) {
        AddFailure(error.what());
    }
}

void CameraControl::OnWindowThread(const Job& job) {
    windowDone.Reset();
    {
        const platform::MutexLock lock(mutex);
        windowJob = job;
    }
    pausable.Set();
    listener.OnControlChanged();
    windowDone.Wait(platform::kInfinite);
    if (isGrabbing) {
        pausable.Reset();
    }
}

void CameraControl::OnDialogThread(const Job& job) {
    if (hasDialog) {
        OnWindowThread(job);
    } else {
        job();
    }
}

void CameraControl::ServeWindowThread() {
    std::optional<Job> job;
    {
        const platform::MutexLock lock(mutex);
        job.swap(windowJob);
    }
    if (job) {
        (*job)();
        windowDone.Set();
    }
}

// Opening and closing

void CameraControl::Initialise() {
    try {
        session.Init();
    } catch (const CommandFailure&) {
        SetStage(ViewStage::kFailed);
        throw;
    }
    CMivoraGrabber& grabber = session.Grabber();
    {
        const std::string driver =
            std::string(grabber.GetDriverDesc()) + "\n" + grabber.GetDriverVersion();
        const platform::MutexLock lock(mutex);
        state.driver = driver;
    }
    SetStage(ViewStage::kNoCamera);
    OpenFirst();
}

/// Makes the camera in use active; if there is none yet, the one named by the options, the
/// configured one or the first one.
bool CameraControl::ChooseCamera() {
    CMivoraGrabber& grabber = session.Grabber();
    if (cameraId != 0) {
        const std::int32_t index = grabber.GetCameraIndexByCameraUniqueID(cameraId);
        return index >= 0 && grabber.SetActCameraIndex(index) == MV_OK;
    }
    if (options.cameras.empty() && grabber.GetNumCameras() == 0) {
        return false;
    }
    session.ChooseCamera();
    return true;
}

void CameraControl::OpenFirst() {
    if (ChooseCamera()) {
        cameraId = session.Grabber().GetActCamera()->GetCameraUniqueID();
        session.OpenActCamera();
        SetOpened();
        StartGrabbing(kContinuous);
    }
}

void CameraControl::OpenAgain() {
    StopGrabbing();
    bool isOpen = false;
    OnDialogThread([this, &isOpen] {
        CMivoraGrabber& grabber = session.Grabber();
        grabber.CloseActCamera();
        grabber.RefreshCameraList();
        try {
            isOpen = ChooseCamera() && grabber.OpenActCamera() == MV_OK;
        } catch (const CommandFailure&) {
            isOpen = false; // the requested camera is not available yet
        }
    });
    session.Log().TakeErrors(); // a missing camera is not a failure
    if (!isOpen) {
        SetStage(cameraId == 0 ? ViewStage::kNoCamera : ViewStage::kWaiting);
        return;
    }
    SetOpened();
    if (wantsLive) {
        StartGrabbing(kContinuous);
    }
}

void CameraControl::SetOpened() {
    CMivoraCamera* const camera = session.Grabber().GetActCamera();
    cameraId = camera->GetCameraUniqueID();
    {
        const platform::MutexLock lock(mutex);
        state.camera = camera->GetCameraName();
    }
    SetStage(ViewStage::kOpen);
}

void CameraControl::CamerasChanged() {
    // One check covers all changes reported before it.
    if (!isChangeOrdered.exchange(true)) {
        Order([this] {
            isChangeOrdered = false;
            if (State().stage != ViewStage::kFailed) {
                OpenAgain();
            }
        });
    }
}

void CameraControl::Finish() {
    StopGrabbing();
    if (session.Grabber().IsCameraOpen() && !hasDialog) {
        session.Grabber().CloseActCamera();
    }
    hasEnded = true;
}

// Images

void CameraControl::StartGrabbing(std::uint32_t mode) {
    CMivoraGrabber& grabber = session.Grabber();
    const ImageLayout layout = DescribeImage(session.CheckedMode());
    session.PrepareBuffers(kBuffers, std::to_string(kBuffers) + " frame buffers");
    pipe.Begin(layout);
    {
        const platform::MutexLock lock(mutex);
        state.layout = layout;
    }
    isGrabbing = true;
    pausable.Reset();
    const MV_ERRCODE code = grabber.Snap(mode);
    if (code != MV_OK) {
        StopGrabbing();
        session.Check("Snap", code, session.ActCameraText());
    }
    SetStage(mode == kContinuous ? ViewStage::kLive : ViewStage::kSnapping);
}

void CameraControl::StopGrabbing() {
    if (!isGrabbing) {
        return;
    }
    session.Grabber().StopSnap();
    isGrabbing = false;
    pausable.Set();
    SetStage(ViewStage::kOpen);
}

void CameraControl::LookAtSnap() {
    if (session.Grabber().GetAcquisitionState() == 0) {
        StopGrabbing();
    }
}

void CameraControl::Start() {
    Order([this] {
        wantsLive = true;
        if (State().stage == ViewStage::kOpen || State().stage == ViewStage::kSnapping) {
            StopGrabbing();
            StartGrabbing(kContinuous);
        }
    });
}

void CameraControl::Stop() {
    Order([this] {
        wantsLive = false;
        StopGrabbing();
    });
}

void CameraControl::Snap() {
    Order([this] {
        wantsLive = false;
        StopGrabbing();
        if (State().stage == ViewStage::kOpen) {
            StartGrabbing(kOneImage);
        }
    });
}

// The module reports these before and after a dialog changes the buffer layout, which the camera
// accepts only while it is not acquiring.
std::uint32_t CameraControl::OnCameraControl(std::uint32_t code, void* self) {
    CameraControl& control = *static_cast<CameraControl*>(self);
    if (code == kMvEventBufferImpactBegins) {
        control.isChanging = true;
        control.PauseForChange();
    } else if (code == kMvEventBufferImpactEnded) {
        control.isChanging = false;
        control.Order([&control] {
            // The next change may already have begun, whose end arrives here as well, or the user
            // may have stopped or ordered a single image.
            if (!control.isChanging && control.isPaused.exchange(false) && control.wantsLive &&
                control.State().stage == ViewStage::kOpen) {
                control.StartGrabbing(kContinuous);
            }
        });
    }
    return 1;
}

void CameraControl::PauseForChange() {
    if (!isGrabbing) {
        return;
    }
    const auto pause = [this] {
        if (isGrabbing) {
            isPaused = wantsLive;
            StopGrabbing();
        }
    };
    Order(pause, true);
    pausable.Wait(platform::kInfinite);
    // The control's thread may itself be waiting for the current thread.
    pause();
}

// Files, scripts and dialogs

void CameraControl::SaveConfiguration() {
    Order([this] {
        session.Check("SaveGrabberConfig", session.Grabber().SaveGrabberConfig(),
                      options.configFile.empty() ? "no file was given with --config"
                                                 : options.configFile);
    });
}

void CameraControl::SaveImage(std::shared_ptr<const GrabbedFrame> frame, const std::string& path) {
    Order(
        [frame = std::move(frame), path] { WriteImage(path, frame->layout, frame->bytes.data()); });
}

void CameraControl::RunScript(const std::string& lines, std::function<void(std::string)> done) {
    Order([this, lines, done = std::move(done)] {
        std::string answers;
        try {
            for (const std::string& line : ScriptLines(lines)) {
                std::string answer;
                const std::int32_t result = sdkControl.Run(line, answer);
                answers.append(line).append("\n  ").append(std::to_string(result));
                answers.append(" ").append(answer).append("\n");
                if (result != 0) {
                    break;
                }
            }
        } catch (const CommandFailure& failure) {
            answers += std::string(failure.what()) + "\n";
        }
        done(answers);
    });
}

void CameraControl::RunDialog(const char* operation, const std::function<MV_ERRCODE()>& dialog) {
    MV_ERRCODE code = MV_OK;
    session.Log().TakeErrors();
    OnWindowThread([&] { code = dialog(); });
    session.Check(operation, code);
}

void CameraControl::SelectCamera(MV_WINDOW parent) {
    Order([this, parent] {
        const bool wasLive = State().stage == ViewStage::kLive;
        StopGrabbing();
        CMivoraGrabber& grabber = session.Grabber();
        MV_DLG_EXITCODE exitCode = MV_DLG_CANCEL;
        MV_ERRCODE opened = MV_OK;
        const auto goOn = [&] {
            if (wasLive) {
                StartGrabbing(kContinuous);
            }
        };
        try {
            RunDialog("SelectCameraDialog", [&] {
                const MV_ERRCODE code = grabber.SelectCameraDialog(parent, &exitCode);
                if (code == MV_OK && exitCode == MV_DLG_OK) {
                    opened = grabber.OpenActCamera();
                }
                return code;
            });
        } catch (const CommandFailure&) {
            goOn();
            throw;
        }
        if (exitCode != MV_DLG_OK) {
            goOn();
            return;
        }
        if (opened != MV_OK) {
            SetStage(cameraId == 0 ? ViewStage::kNoCamera : ViewStage::kWaiting);
            session.Check("OpenActCamera", opened, session.ActCameraText());
        }
        SetOpened();
        wantsLive = true;
        StartGrabbing(kContinuous);
    });
}

void CameraControl::ShowCameraControl(MV_WINDOW parent) {
    Order([this, parent] {
        RunDialog("CamCntrlDialog", [&] {
            const MV_ERRCODE code = session.Grabber().CamCntrlDialog(parent);
            hasDialog = hasDialog || code == MV_OK;
            return code;
        });
    });
}

void CameraControl::ConfigureGrabber(MV_WINDOW parent) {
    Order([this, parent] {
        RunDialog("GrabberConfigDialog", [&] {
            MV_DLG_EXITCODE exitCode = MV_DLG_CANCEL;
            return session.Grabber().GrabberConfigDialog(parent, &exitCode);
        });
    });
}

void CameraControl::ConfigureChannel(MV_WINDOW parent) {
    Order([this, parent] {
        CMivoraGrabber& grabber = session.Grabber();
        if (!grabber.GetActCmdChannel()) {
            CCmdChannel* const channel = grabber.CreateCmdChannel(kCameraChannelType);
            session.Check("CreateCmdChannel", channel ? MV_OK : MV_REFUSED);
            session.Check("AddCmdChannel", grabber.AddCmdChannel(channel));
        }
        RunDialog("SelectCmdDialog", [&] {
            MV_DLG_EXITCODE exitCode = MV_DLG_CANCEL;
            return grabber.SelectCmdDialog(parent, &exitCode);
        });
    });
}

std::vector<std::string> CameraControl::TakeFailures() {
    const platform::MutexLock lock(mutex);
    return std::exchange(failures, {});
}

ViewState CameraControl::State() const {
    const platform::MutexLock lock(mutex);
    return state;
}

void CameraControl::SetStage(ViewStage stage) {
    {
        const platform::MutexLock lock(mutex);
        state.stage = stage;
    }
    listener.OnControlChanged();
}

void CameraControl::AddFailure(const std::string& text) {
    {
        const platform::MutexLock lock(mutex);
        failures.push_back(text);
    }
    listener.OnControlChanged();
}
