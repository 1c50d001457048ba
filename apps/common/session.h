// session.h - a grabber at work for one command
#pragma once

#include "apps/common/app_options.h"
#include "apps/common/event_recorder.h"
#include "apps/common/log_file.h"
#include "apps/common/sdk_control.h"
#include "mivora/types.h"

#include <cstdint>
#include <memory>
#include <string>

class CMivoraCamera;
class CMivoraGfxMode;
class CMivoraGrabber;
class IGrabberMaker;

/// Owns log, grabber and event recorder, and brings the grabber as far as a command needs it.
/// What fails throws CommandFailure with the reasons that the log gives. One thread.
class Session {
public:
    /// Sets PYXEN_HOME, opens the log, runs the script for the SDK, makes the grabber and gives it
    /// the configuration file; nothing else runs.
    Session(const AppOptions& appOptions, IGrabberMaker& grabberMaker);
    /// Stops, closes and destroys the grabber.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Reads the configuration and initialises.
    void Init();
    /// Init, and makes the camera active that the options name, when they name one.
    void InitWithCamera();
    /// InitWithCamera, and opens that camera: the configured or the first one when none is named.
    void OpenCamera();
    /// Makes the camera active that has this index, unique id or name.
    void SelectCamera(const std::string& wanted);
    /// Opens the active camera.
    void OpenActCamera();
    /// The active camera's graphics mode. Fails for an unknown pixel format and an empty image.
    CMivoraGfxMode& CheckedMode();

    /// Throws unless the code is MV_OK, with what the log said since the last check.
    void Check(const std::string& operation, MV_ERRCODE code, const std::string& object = {});
    /// Index and name of a camera, for messages.
    static std::string CameraText(std::int32_t index, CMivoraCamera* camera);
    std::string ActCameraText();

    CMivoraGrabber& Grabber() { return *grabber; }
    EventRecorder& Events() { return *events; }
    LogFile& Log() { return log; }
    SdkControl& Sdk() { return sdkControl; }

private:
    /// Lines of the host go to a sink as long as this lives.
    class InstalledSink {
    public:
        explicit InstalledSink(ILogSink& sink) { MivoraInstallLogSink(&sink); }
        ~InstalledSink() { MivoraInstallLogSink(nullptr); }
        InstalledSink(const InstalledSink&) = delete;
        InstalledSink& operator=(const InstalledSink&) = delete;
    };

    void RunSdkScript();
    std::string KnownCameras();
    std::string SdkText();

    const AppOptions& options;
    IGrabberMaker& maker;
    SdkControl sdkControl;
    LogFile log;
    const InstalledSink installedLog{log};
    CMivoraGrabber* grabber = nullptr; // the maker's
    std::unique_ptr<EventRecorder> events;
};
