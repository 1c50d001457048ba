// session.cpp - the grabber of one command
#include "apps/common/session.h"

#include "apps/common/command_failure.h"
#include "apps/common/grabber_maker.h"
#include "apps/common/parse_number.h"
#include "apps/common/service_client.h"
#include "mivora/grabber.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/printable_text.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <utility>

namespace {

std::string Hex32(std::uint32_t number) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(number));
    return text;
}

// The grabber uses the file's directory as written: for a bare name it would look for companion
// files in the root directory.
std::string WithDirectory(const std::string& file) {
    return platform::DirectoryOf(file).empty() ? platform::JoinPath(".", file) : file;
}

} // namespace

Session::Session(const AppOptions& appOptions, IGrabberMaker& grabberMaker)
    : options(appOptions), maker(grabberMaker), sdkPlaces(ApplySdk(appOptions)) {
    log.Open(options.log);
    RunSdkScript();
    grabber = maker.Create();
    if (!options.configFile.empty()) {
        const MV_ERRCODE code =
            grabber->SetGrabberIni(WithDirectory(options.configFile).c_str(), 0);
        if (code != MV_OK) {
            maker.Delete(grabber);
            Check("SetGrabberIni", code, options.configFile);
        }
    }
    events = std::make_unique<EventRecorder>(*grabber);
}

Session::~Session() {
    grabber->StopSnap();
    events.reset();
    maker.Delete(grabber);
}

void Session::RunSdkScript() {
    if (!options.sdkScript.empty()) {
        sdkControl.RunScript(options.sdkScript);
    }
}

void Session::Init() {
    if (!options.configFile.empty()) {
        Check("LoadGrabberConfig", grabber->LoadGrabberConfig(), options.configFile);
    }
    // The commands depend on these notifications, even if the configuration disables them.
    grabber->SetFeature(EMV_FEATURE_POST_PROCESS, 1);
    grabber->SetFeature(EMV_FEATURE_CAM_CFG_CHANGE, 1);
    grabber->SetFeature(EMV_FEATURE_CAM_CNTRL_EVENT, 1);
    const MV_ERRCODE code = grabber->Init();
    if (code == MV_OK) {
        Check("Init", code);
    } else {
        Check("Init", code, SdkText(), SdkProblems());
    }
}

std::vector<std::string> Session::SdkProblems() const {
    std::vector<std::string> problems = SdkLibraryProblems();
    if (!problems.empty() && !sdkPlaces.empty()) {
        problems.insert(problems.begin(), sdkPlaces);
    }
    return problems;
}

std::string Session::SdkText() {
    std::string text = "the camera SDK of PYXEN_HOME=" + platform::GetEnvironment("PYXEN_HOME");
    const std::string file =
        std::string(grabber->GetConfigDirectory()) + platform::kPathSeparator + "PxnC.xml";
    if (platform::PathExists(file)) {
        text += " with " + file;
    }
    return text;
}

void Session::InitWithCamera() {
    Init();
    if (!options.camera.empty()) {
        SelectCamera(options.camera);
    }
}

void Session::OpenCamera() {
    InitWithCamera();
    if (!grabber->GetActCamera()) {
        if (grabber->GetNumCameras() == 0) {
            throw CommandFailure("there is no camera");
        }
        Check("SetActCameraIndex", grabber->SetActCameraIndex(0), "camera 0");
    }
    OpenActCamera();
}

void Session::OpenActCamera() {
    Check("OpenActCamera", grabber->OpenActCamera(), ActCameraText());
}

ServiceClient& Session::Services() {
    if (!services) {
        std::string reason;
        IMivoraModuleServices* const offered = maker.Services(grabber, reason);
        if (!offered) {
            throw CommandFailure("the grabber module offers no access to features", {reason});
        }
        services = std::make_unique<ServiceClient>(*offered, [this] { return log.TakeErrors(); });
    }
    return *services;
}

CMivoraGfxMode& Session::CheckedMode() {
    CMivoraCamera* const camera = grabber->GetActCamera();
    CMivoraGfxMode* const mode = camera ? camera->GetActGfxMode() : nullptr;
    if (!mode) {
        throw CommandFailure(ActCameraText() + " has no graphics mode");
    }
    log.TakeErrors();
    if (mode->GetNumComponents() == 0) {
        Check("GetNumComponents", MV_NO_VIDEO_MODE,
              ActCameraText() + ", whose pixel format is unknown");
    }
    const std::uint32_t width = mode->GetxRes();
    const std::uint32_t height = mode->GetyRes();
    if (width == 0 || height == 0) {
        throw CommandFailure(ActCameraText() + " delivers empty images of " +
                             std::to_string(width) + " x " + std::to_string(height) + " pixels");
    }
    return *mode;
}

void Session::PrepareBuffers(std::uint64_t count, const std::string& object) {
    MV_ERRCODE code = grabber->PrepareFrameBuffers(count);
    // A camera that does not tell the size of its image gets buffers without memory.
    for (std::uint64_t index = 0; code == MV_OK && index < count; ++index) {
        code = grabber->GetFrameBuffer(index) ? MV_OK : MV_BUFFERS_NOT_PREPARED;
    }
    Check("PrepareFrameBuffers", code, object);
}

void Session::Check(const std::string& operation, MV_ERRCODE code, const std::string& object,
                    std::vector<std::string> details) {
    const std::deque<std::string> reasons = log.TakeErrors();
    if (code == MV_OK) {
        return;
    }
    for (const std::string& reason : reasons) {
        details.push_back(reason.substr(std::min(reason.find_first_not_of(' '), reason.size())));
    }
    throw CommandFailure(FailureText(operation, code, object), details);
}

std::string Session::CameraText(std::int32_t index, CMivoraCamera* camera) {
    if (!camera) {
        return "no camera";
    }
    return "camera " + std::to_string(index) + " (" +
           platform::PrintableText(camera->GetCameraName()) + ", " +
           Hex32(camera->GetCameraUniqueID()) + ")";
}

std::string Session::ActCameraText() {
    return CameraText(grabber->GetActCameraIndex(), grabber->GetActCamera());
}

void Session::SelectCamera(const std::string& wanted) {
    std::int32_t index = -1;
    if (const auto number = ParseUnsigned(wanted)) {
        if (*number < grabber->GetNumCameras()) {
            index = static_cast<std::int32_t>(*number);
        } else if (*number <= 0xFFFFFFFFu) {
            index = grabber->GetCameraIndexByCameraUniqueID(static_cast<std::uint32_t>(*number));
        }
    }
    const auto count = static_cast<std::int32_t>(grabber->GetNumCameras());
    for (std::int32_t i = 0; index < 0 && i < count; ++i) {
        if (wanted == grabber->GetCamera(i)->GetCameraName()) {
            index = i;
        }
    }
    if (index < 0) {
        const std::vector<std::string> known = KnownCameras();
        throw CommandFailure("there is no camera \"" + wanted + "\"; " +
                                 (known.empty() ? "there is none at all" : "there are"),
                             known);
    }
    Check("SetActCameraIndex", grabber->SetActCameraIndex(index),
          CameraText(index, grabber->GetCamera(index)));
}

std::vector<std::string> Session::KnownCameras() {
    const std::uint32_t count = grabber->GetNumCameras();
    std::vector<std::string> known;
    known.reserve(count);
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(count); ++i) {
        known.push_back(CameraText(i, grabber->GetCamera(i)));
    }
    return known;
}
