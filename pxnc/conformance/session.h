// session.h - the started library and the open camera that checks work with
#pragma once

#include "pxnc/conformance/driver.h"
#include "pxnc/conformance/findings.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace conformance {

/// What a check finds when it begins.
enum class Stage {
    kStopped, // no startup
    kStarted, // one startup, no camera open
    kOpened,  // and the camera open with full access
};

struct SessionOptions {
    /// File that is given to PxnStartup; empty: the default configuration.
    std::wstring configPath;
    /// Identifier of the camera, plain or extended; empty: the first that can be opened when a
    /// camera is needed for the first time.
    std::string cameraId;
    /// How long to wait for that camera to be listed, in ms.
    std::uint32_t cameraWaitMs = 0;
};

struct NamedModule {
    std::string name;
    PxnHandle handle;
};

struct NamedFeature {
    std::string name; // with its module
    PxnHandle handle;
    PxnFeatureInfo info;
};

/// Brings the library from stage to stage. Used by one thread.
class Session {
public:
    Session(const SdkFunctions& functions, Driver& cameraDriver, SessionOptions sessionOptions);
    /// Stops.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const SdkFunctions& Sdk() const { return sdk; }
    Driver& GetDriver() { return driver; }
    const wchar_t* ConfigPath() const;

    /// Throws NotApplicable when there is no camera to be opened, std::runtime_error when the SDK
    /// fails.
    void Prepare(Stage stage);
    /// Closes the camera and undoes the startup.
    void Stop();
    /// As Stop, and undoes startups that a wrong library has counted besides.
    void StopForGood();
    /// Closes the camera; Prepare opens it again.
    PxnError CloseCamera();
    /// The check has closed the camera itself.
    void ForgetCamera();

    /// Plain identifier of the camera. Throws NotApplicable when there is none.
    std::string CameraId();
    PxnHandle Camera() const { return camera; }
    PxnHandle LocalDevice() const { return info.localDeviceHandle; }
    std::vector<PxnHandle> Streams() const;

    /// The modules of the present stage: system, transport layers, interfaces; camera, local
    /// device and streams.
    std::vector<NamedModule> Modules() const;
    /// All features of these modules.
    std::vector<NamedFeature> Features() const;
    /// Those of a type (PxnFeatureData). Throws NotApplicable when there is none.
    std::vector<NamedFeature> RequireFeatures(std::uint32_t type) const;
    /// Throws NotApplicable when no frame comes within seconds. Tries it once; opened stage.
    void RequireFrames(Findings& findings);
    /// A feature of the camera that can be written only while nothing is acquired; empty when there
    /// is none. Tries it once; opened stage.
    const std::string& LockedFeature();

private:
    void Start();
    void Open();
    bool FindCamera(PxnCameraInfo& found) const;

    const SdkFunctions& sdk;
    Driver& driver;
    SessionOptions options;
    bool isStarted = false;
    PxnHandle camera = nullptr;
    PxnCameraInfo info{};
    std::optional<bool> doFramesCome;
    std::optional<std::string> lockedFeature;
};

/// A text of the SDK, or a word for the null pointer that it must not be.
inline std::string ToText(const char* text) {
    return text ? text : "(null)";
}

/// A path as PxnStartup and the settings functions take it; empty when it cannot be converted.
std::wstring ToWide(const std::string& path);

/// All records of a list function: `list(array, capacity, found)`.
template <typename Record, typename List>
std::vector<Record> ListRecords(List list) {
    std::uint32_t found = 0;
    if (list(static_cast<Record*>(nullptr), 0u, &found) != PxnErrSuccess) {
        return {};
    }
    std::vector<Record> records(found);
    const PxnError result = list(records.data(), found, &found);
    records.resize(result == PxnErrSuccess && found < records.size() ? found : records.size());
    return result == PxnErrSuccess || result == PxnErrMoreData ? records : std::vector<Record>();
}

std::vector<PxnCameraInfo> ListCameras(const SdkFunctions& sdk);
std::vector<PxnFeatureInfo> ListFeatures(const SdkFunctions& sdk, PxnHandle handle);
std::vector<const char*> ListEnumEntries(const SdkFunctions& sdk, PxnHandle handle,
                                         const char* name);

} // namespace conformance
