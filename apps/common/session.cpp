// session.cpp - the grabber of one command
#include "apps/common/session.h"

#include "apps/common/command_failure.h"
#include "apps/common/grabber_maker.h"
#include "apps/common/service_client.h"
#include "apps/doctor/gige_search.h"
#include "apps/doctor/ip_text.h"
#include "mivora/grabber.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/network_interfaces.h"
#include "platform/printable_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t kLongestIdentifier = 1024;
constexpr const char* kSdkConfiguration = "PxnC.xml";

// What the module logs of the SDK's codes for a camera that cannot be opened.
constexpr const char* kInUse = "Something is already in use";
constexpr const char* kNoAccess = "Operation is invalid with the current access mode";
// The transport layer of cameras that can be asked who has them, and for how long they are.
constexpr const char* kGigeVision = "GEV";
constexpr std::uint32_t kHolderMs = 100;
constexpr const char* kNotThere = "cannot be found";
// Begin of what the reader of feature synchronisation files logs.
constexpr const char* kSyncReader = "FeatureSyncher::Init: ";

// The grabber uses the file's directory as written: for a bare name it would look for companion
// files in the root directory.
std::string WithDirectory(const std::string& file) {
    return platform::DirectoryOf(file).empty() ? platform::JoinPath(".", file) : file;
}

} // namespace

Session::Session(const AppOptions& appOptions, IGrabberMaker& grabberMaker)
    : Session(appOptions, grabberMaker, std::make_unique<SessionShare>(appOptions)) {
    options.Camera(); // refuses several
}

Session::Session(const AppOptions& appOptions, IGrabberMaker& grabberMaker,
                 SessionShare& sessionShare)
    : options(appOptions), maker(grabberMaker), share(sessionShare) {
    CreateGrabber();
}

Session::Session(const AppOptions& appOptions, IGrabberMaker& grabberMaker,
                 std::unique_ptr<SessionShare> shareToOwn)
    : options(appOptions), maker(grabberMaker), ownShare(std::move(shareToOwn)), share(*ownShare) {
    CreateGrabber();
}

void Session::CreateGrabber() {
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
    share.Release(*this);
}

/// The directory alone may be meant, for what lies beside the file.
void Session::RequireConfiguration() {
    const std::string beside = platform::JoinPath(grabber->GetConfigDirectory(), kSdkConfiguration);
    if (!options.mayBeNew && !platform::PathExists(options.configFile) &&
        !platform::PathExists(beside)) {
        throw CommandFailure("there is no configuration file " + options.configFile + ", and no " +
                             kSdkConfiguration + " beside it");
    }
}

void Session::Init() {
    if (!options.configFile.empty()) {
        RequireConfiguration();
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
    if (!problems.empty() && !share.SdkPlaces().empty()) {
        problems.insert(problems.begin(), share.SdkPlaces());
    }
    return problems;
}

std::string Session::SdkText() {
    std::string text = "the camera SDK of PYXEN_HOME=" + platform::GetEnvironment("PYXEN_HOME");
    const std::string file =
        std::string(grabber->GetConfigDirectory()) + platform::kPathSeparator + kSdkConfiguration;
    if (platform::PathExists(file)) {
        text += " with " + file;
    }
    return text;
}

void Session::InitWithCamera() {
    Init();
    if (!options.Camera().empty()) {
        SelectCamera(options.Camera());
    }
}

void Session::OpenCamera() {
    Init();
    ChooseCamera();
    OpenActCamera();
}

void Session::ChooseCamera() {
    if (!options.Camera().empty()) {
        SelectCamera(options.Camera());
        return;
    }
    if (grabber->GetActCamera()) {
        return;
    }
    const std::string configured = ConfiguredCamera();
    std::int32_t index = 0;
    if (!configured.empty()) {
        // The module has looked for it in its first list only.
        const std::vector<KnownCamera> cameras = KnownCameras();
        const auto found =
            std::find_if(cameras.begin(), cameras.end(), [&](const KnownCamera& camera) {
                return camera.extendedId == configured;
            });
        if (found == cameras.end()) {
            throw Missing("the configured camera \"" + configured + "\" (UniqueId in " +
                          options.configFile + ") is not there");
        }
        index = found->index;
    } else if (grabber->GetNumCameras() == 0) {
        throw CameraMissing("there is no camera");
    }
    Check("SetActCameraIndex", grabber->SetActCameraIndex(index),
          CameraText(index, grabber->GetCamera(index)));
}

std::string Session::ConfiguredCamera() {
    std::array<char, kLongestIdentifier> text{};
    grabber->GetGrabberString("UniqueId", "", text.data(), text.size());
    return text.data();
}

void Session::OpenActCamera() {
    CMivoraCamera* const camera = grabber->GetActCamera();
    if (camera && !share.Claim(*this, camera->GetCameraUniqueID())) {
        throw CameraNamedTwice(ActCameraText() + " is named twice");
    }
    Log().TakeErrors();
    const MV_ERRCODE code = grabber->OpenActCamera();
    const std::deque<std::string> logged = Log().TakeErrors();
    if (code == MV_OK) {
        WarnOfSyncFile(logged);
        return;
    }
    Check("OpenActCamera", code, ActCameraText(), OpeningProblems(logged));
}

std::vector<std::string> Session::OpeningProblems(const std::deque<std::string>& logged) {
    const auto isLogged = [&](const char* text) {
        return std::any_of(logged.begin(), logged.end(), [text](const std::string& line) {
            return line.find(text) != std::string::npos;
        });
    };
    std::vector<std::string> problems;
    if (isLogged(kInUse) || isLogged(kNoAccess)) {
        problems.push_back("somebody else has it open: " + HolderText());
    } else if (isLogged(kNotThere)) {
        problems.emplace_back("it is not there any more");
    }
    problems.insert(problems.end(), logged.begin(), logged.end());
    return problems;
}

std::string Session::HolderText() {
    const std::vector<KnownCamera> cameras = KnownCameras();
    const auto index = static_cast<std::size_t>(grabber->GetActCameraIndex());
    if (index < cameras.size() && cameras[index].transportLayer == kGigeVision) {
        const std::vector<platform::NetworkInterface> interfaces =
            platform::ListNetworkInterfaces();
        const auto host = GigeSearch(interfaces, options.gigePort)
                              .FindController(cameras[index].serialNumber, kHolderMs);
        if (host) {
            const bool isHere = std::any_of(interfaces.begin(), interfaces.end(),
                                            [&](const auto& own) { return own.address == *host; });
            return "a program on " + (isHere ? std::string("this computer") : IpText(*host));
        }
    }
    return "another program here or on another computer, or this one a second time";
}

void Session::WarnOfSyncFile(const std::deque<std::string>& logged) {
    std::string reason;
    for (const std::string& line : logged) {
        if (line.starts_with(kSyncReader)) {
            reason = line.substr(std::strlen(kSyncReader));
        }
    }
    const std::string unread = Log().TakeUnreadSyncFile();
    if (!unread.empty()) {
        // "Loading FILE..."
        const std::string file = unread.substr(unread.find("Loading ") + 8);
        reason = file.substr(0, file.size() - 3) + " is faulty" +
                 (reason.empty() ? "" : " (" + reason + ")") +
                 "; only what it declares before the fault is synchronised";
    }
    if (!reason.empty()) {
        std::fprintf(stderr, "mivora: warning: feature synchronisation: %s\n",
                     platform::PrintableText(reason).c_str());
    }
}

ServiceClient& Session::Services() {
    ServiceClient* const offered = OptionalServices();
    if (!offered) {
        throw CommandFailure("the grabber module offers no access to features", {servicesReason});
    }
    return *offered;
}

ServiceClient* Session::OptionalServices() {
    if (!areServicesKnown) {
        areServicesKnown = true;
        if (IMivoraModuleServices* const offered = maker.Services(grabber, servicesReason)) {
            services =
                std::make_unique<ServiceClient>(*offered, [this] { return Log().TakeErrors(); });
        }
    }
    return services.get();
}

CMivoraGfxMode& Session::CheckedMode() {
    CMivoraCamera* const camera = grabber->GetActCamera();
    CMivoraGfxMode* const mode = camera ? camera->GetActGfxMode() : nullptr;
    if (!mode) {
        throw CommandFailure(ActCameraText() + " has no graphics mode");
    }
    Log().TakeErrors();
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
    passedOver.clear();
    std::vector<std::string>& reasons = code == MV_OK ? passedOver : details;
    for (const std::string& reason : Log().TakeErrors()) {
        reasons.push_back(reason.substr(std::min(reason.find_first_not_of(' '), reason.size())));
    }
    if (code == MV_OK) {
        return;
    }
    throw CommandFailure(FailureText(operation, code, object), details);
}

std::string Session::CameraText(std::int32_t index, CMivoraCamera* camera) {
    if (!camera) {
        return "no camera";
    }
    KnownCamera known;
    known.index = index;
    known.uniqueId = camera->GetCameraUniqueID();
    known.name = camera->GetCameraName();
    return known.Text();
}

std::string Session::ActCameraText() {
    return CameraText(grabber->GetActCameraIndex(), grabber->GetActCamera());
}

void Session::SelectCamera(const std::string& wanted) {
    const std::vector<KnownCamera> cameras = KnownCameras();
    const std::vector<std::size_t> found = FindCameras(cameras, wanted);
    if (found.empty()) {
        throw Missing("there is no camera \"" + wanted + "\"");
    }
    if (found.size() > 1) {
        std::vector<std::string> lines;
        for (const std::size_t position : found) {
            lines.push_back(cameras[position].WholeText());
        }
        throw CommandFailure("\"" + wanted + "\" names " + std::to_string(found.size()) +
                                 " cameras; name one of them by what only it has",
                             lines);
    }
    const KnownCamera& camera = cameras[found.front()];
    Check("SetActCameraIndex", grabber->SetActCameraIndex(camera.index), camera.Text());
}

std::vector<KnownCamera> Session::KnownCameras() {
    return ListKnownCameras(*grabber, OptionalServices());
}

CameraMissing Session::Missing(const std::string& text) {
    std::vector<std::string> lines;
    for (const KnownCamera& camera : KnownCameras()) {
        lines.push_back(camera.WholeText());
    }
    return CameraMissing(text + "; " + (lines.empty() ? "there is none at all" : "there are"),
                         lines);
}
