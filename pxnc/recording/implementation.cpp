// implementation.cpp - the SDK whose only camera plays a recording
//
// PYXEN_RECORDING names the recording's directory, PYXEN_RECORDING_FAST the way to play it.
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/printable_text.h"
#include "pxnc/recording/backend.h"
#include "pxnc/skeleton/never_destroyed.h"

#include <cstdio>
#include <new>
#include <utility>

namespace playback {
namespace {

void Report(const std::string& message) {
    std::fprintf(stderr, "PxnC: %s\n", platform::PrintableText(message).c_str());
}

class PlaybackSdk final : public skeleton::Implementation {
public:
    PxnVersionInfo Version() override { return {1, 0, 0}; }

    /// Has no configuration: whichever file is named is not looked at.
    PxnError Start(const wchar_t*, std::shared_ptr<skeleton::Backend>& started) override {
        const std::string directory = platform::GetEnvironment("PYXEN_RECORDING");
        if (directory.empty()) {
            Report("PYXEN_RECORDING names no recording");
            return PxnErrNotFound;
        }
        if (!platform::PathExists(platform::JoinPath(directory, kRecordingDescriptionName))) {
            Report("the recording cannot be played: there is no " +
                   platform::JoinPath(directory, kRecordingDescriptionName));
            return PxnErrNotFound;
        }
        std::shared_ptr<const Recording> recording;
        try {
            recording = Recording::Open(directory,
                                        !platform::GetEnvironment("PYXEN_RECORDING_FAST").empty());
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& failure) {
            Report("the recording cannot be played: " + std::string(failure.what()));
            return PxnErrXml;
        }
        if (recording->plan.otherLayouts != 0) {
            Report(std::to_string(recording->plan.otherLayouts) + " frames of " + directory +
                   " are left out, as their images are of other sizes than the first");
        }
        auto backend = std::make_shared<Backend>(std::move(recording));
        if (!backend->Start()) {
            return PxnErrResources;
        }
        started = std::move(backend);
        return PxnErrSuccess;
    }
};

} // namespace
} // namespace playback

skeleton::Implementation& skeleton::TheImplementation() {
    static NeverDestroyed<playback::PlaybackSdk> sdk;
    return sdk.Get();
}
