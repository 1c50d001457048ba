// session.h - the grabber of one command
#pragma once

#include "apps/common/app_options.h"
#include "apps/common/command_failure.h"
#include "apps/common/event_recorder.h"
#include "apps/common/known_camera.h"
#include "apps/common/session_share.h"
#include "mivora/types.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

class CMivoraCamera;
class CMivoraGfxMode;
class CMivoraGrabber;
class IGrabberMaker;
class ServiceClient;

/// The camera that is wanted is not there; it may come.
class CameraMissing : public CommandFailure {
public:
    using CommandFailure::CommandFailure;
};

/// Another session of this process has the camera.
class CameraNamedTwice : public CommandFailure {
public:
    using CommandFailure::CommandFailure;
};

/// Owns the grabber and the event recorder, and sets the grabber up as far as a command needs.
/// Failures throw CommandFailure with the reasons from the log. One thread at a time; sessions that
/// share the log may each have their own, and a failure of one may show a line that the log got
/// because of another one.
class Session {
public:
    /// Creates the grabber and passes it the configuration file. Does not initialise the grabber.
    /// Makes what sessions share for itself.
    Session(const AppOptions& appOptions, IGrabberMaker& grabberMaker);
    /// The same for one of several sessions of this process. `sessionShare` must outlive it.
    Session(const AppOptions& appOptions, IGrabberMaker& grabberMaker, SessionShare& sessionShare);
    /// Stops, closes and destroys the grabber.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Loads the configuration and initialises the grabber.
    void Init();
    /// Init, then makes the camera active that the options name, if any.
    void InitWithCamera();
    /// Init, ChooseCamera and OpenActCamera.
    void OpenCamera();
    /// Makes the camera active that the options name, else the configured one, else the first.
    /// Throws CameraMissing if it is not there: no other one is taken in its place.
    void ChooseCamera();
    /// Makes the camera active that `wanted` names, see FindCameras. Throws CameraMissing if it is
    /// not there, CommandFailure if several cameras have this name.
    void SelectCamera(const std::string& wanted);
    /// The identifier that the configuration names; empty for none.
    std::string ConfiguredCamera();
    /// The grabber's list.
    std::vector<KnownCamera> KnownCameras();
    /// Opens the active camera. Warns on standard error of a feature synchronisation file that
    /// could not be read.
    void OpenActCamera();
    /// The active camera's graphics mode. Throws for an unknown pixel format or an empty image.
    CMivoraGfxMode& CheckedMode();
    /// Prepares buffers, all of which have memory. `object` is what a failure is about.
    void PrepareBuffers(std::uint64_t count, const std::string& object);

    /// Throws unless the code is MV_OK, with the details and the errors logged since the last
    /// check.
    void Check(const std::string& operation, MV_ERRCODE code, const std::string& object = {},
               std::vector<std::string> details = {});
    /// The errors that the last operation that Check has taken for done had logged.
    const std::vector<std::string>& ErrorsInSpiteOfSuccess() const { return passedOver; }
    /// Index, name and unique id of a camera, for messages; printable.
    static std::string CameraText(std::int32_t index, CMivoraCamera* camera);
    std::string ActCameraText();

    /// What the grabber's module offers beside it. Throws CommandFailure when it offers nothing.
    ServiceClient& Services();
    /// The same; null when it offers nothing.
    ServiceClient* OptionalServices();

    CMivoraGrabber& Grabber() { return *grabber; }
    EventRecorder& Events() { return *events; }
    LogFile& Log() { return share.Log(); }
    SdkControl& Sdk() { return share.Sdk(); }
    /// Other sessions of this process may use the same SDK, whose counts then are not this one's.
    bool IsShared() const { return !ownShare; }

private:
    void RequireConfiguration();
    Session(const AppOptions& appOptions, IGrabberMaker& grabberMaker,
            std::unique_ptr<SessionShare> shareToOwn);
    void CreateGrabber();
    /// "TEXT; there are" and the cameras of the list, one a line.
    CameraMissing Missing(const std::string& text);
    std::string SdkText();
    /// Why a camera could not be opened: what that means, if it is known, and what was logged.
    std::vector<std::string> OpeningProblems(const std::deque<std::string>& logged);
    /// Whoever has the active camera open: what the camera says, or who that may be.
    std::string HolderText();
    void WarnOfSyncFile(const std::deque<std::string>& logged);
    /// Where the SDK's library was looked for; empty when it can be loaded.
    std::vector<std::string> SdkProblems() const;

    const AppOptions& options;
    IGrabberMaker& maker;
    const std::unique_ptr<SessionShare> ownShare; // null when it is somebody else's
    SessionShare& share;
    CMivoraGrabber* grabber = nullptr; // owned by the maker
    std::unique_ptr<EventRecorder> events;
    std::vector<std::string> passedOver; // by the last Check
    bool areServicesKnown = false;
    std::unique_ptr<ServiceClient> services; // once wanted
    std::string servicesReason;              // why there are none
};
