// camera_return.cpp - waits for a camera that is not there, and sets it up as it was
#include "apps/mivora/camera_return.h"

#include "apps/common/command_failure.h"
#include "apps/common/service_client.h"
#include "apps/common/session.h"
#include "mivora/grabber.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/interrupt.h"
#include "platform/printable_text.h"

#include <cstdio>

namespace {

constexpr std::uint64_t kLookAgainMs = 500;
constexpr std::size_t kMostNamedSettings = 10;
constexpr const char* kSettingsFile = "settings.json";

void WarnThat(const std::string& text) {
    std::fprintf(stderr, "mivora: warning: %s\n", platform::PrintableText(text).c_str());
}

std::string LayoutText(const ImageLayout& layout) {
    return std::to_string(layout.width) + " x " + std::to_string(layout.height) + " pixels, " +
           ColorCodingName(layout.colorCoding) + ", " + std::to_string(layout.bits) + " bits";
}

} // namespace

CameraReturn::CameraReturn(Session& waitingSession,
                           const std::vector<FeatureAssignment>& assignmentsToRepeat)
    : session(waitingSession), assignments(assignmentsToRepeat) {}

CameraReturn::~CameraReturn() {
    if (!directory.empty()) {
        platform::RemoveDirectoryTree(directory);
    }
}

bool CameraReturn::OpenFirst() {
    session.Init();
    for (bool isWaiting = false; !platform::InterruptRequested();) {
        try {
            session.ChooseCamera();
            session.OpenActCamera();
            return true;
        } catch (const CameraMissing& missing) {
            if (!isWaiting) {
                std::fprintf(stderr, "mivora: %s\nmivora: waiting for it\n", missing.what());
            }
            isWaiting = true;
        } catch (const CameraNamedTwice&) {
            throw;
        } catch (const CommandFailure&) {
            // One that has just come may be gone again, or still be held by who had it before.
            if (!isWaiting) {
                throw;
            }
        }
        WaitForChange();
        session.Check("RefreshCameraList", session.Grabber().RefreshCameraList());
    }
    return false;
}

void CameraReturn::KeepSettings() {
    layout = DescribeImage(session.CheckedMode());
    ServiceClient* const services = session.OptionalServices();
    if (!services) {
        return;
    }
    if (directory.empty()) {
        directory = platform::CreateTemporaryDirectory("mivora-");
    }
    if (directory.empty()) {
        WarnThat("the settings are not kept for a reconnect: there is no directory for a "
                 "temporary file");
        return;
    }
    try {
        services->SaveSettings(platform::JoinPath(directory, kSettingsFile));
    } catch (const CommandFailure& failure) {
        WarnThat(std::string("the settings are not kept for a reconnect: ") + failure.what());
        platform::RemoveDirectoryTree(directory);
        directory.clear();
    }
}

bool CameraReturn::Await(std::uint64_t lastSeen) {
    CMivoraGrabber& grabber = session.Grabber();
    const std::string name = session.ActCameraText();
    const std::uint32_t uniqueId = grabber.GetActCamera()->GetCameraUniqueID();
    grabber.CloseActCamera();
    while (!platform::InterruptRequested()) {
        if (OpenAgain(uniqueId)) {
            ApplyFeatureAssignments(session, assignments);
            RestoreSettings();
            ++times;
            std::fprintf(stderr, "mivora: %s was away for %.1f s and is back\n", name.c_str(),
                         static_cast<double>(platform::MonotonicNanoseconds() - lastSeen) / 1e9);
            return true;
        }
        WaitForChange();
    }
    return false;
}

bool CameraReturn::OpenAgain(std::uint32_t uniqueId) {
    CMivoraGrabber& grabber = session.Grabber();
    session.Check("RefreshCameraList", grabber.RefreshCameraList());
    const std::int32_t index = grabber.GetCameraIndexByCameraUniqueID(uniqueId);
    return index >= 0 && grabber.SetActCameraIndex(index) == MV_OK &&
           grabber.OpenActCamera() == MV_OK;
}

void CameraReturn::RestoreSettings() {
    if (!directory.empty()) {
        const SettingsOutcome outcome =
            session.Services().LoadSettings(platform::JoinPath(directory, kSettingsFile), false);
        std::size_t refused = 0;
        for (const SettingReport& setting : outcome.settings) {
            if (setting.result != MV_SERVICE_OK && ++refused <= kMostNamedSettings) {
                WarnThat(setting.module + "/" + setting.feature + " is not restored to " +
                         setting.value + ": " + setting.reason);
            }
        }
        if (refused > kMostNamedSettings) {
            WarnThat(std::to_string(refused - kMostNamedSettings) +
                     " more settings are not restored");
        }
    }
    const ImageLayout present = DescribeImage(session.CheckedMode());
    if (!(present == layout)) {
        throw CommandFailure(session.ActCameraText() + " is back with other images: " +
                             LayoutText(present) + " instead of " + LayoutText(layout));
    }
}

void CameraReturn::WaitForChange() {
    EventRecorder& events = session.Events();
    const std::uint64_t changes = events.ConfigurationChanges();
    events.WaitFor([&] { return events.ConfigurationChanges() != changes; }, kLookAgainMs);
}
