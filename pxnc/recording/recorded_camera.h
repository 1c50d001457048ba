// recorded_camera.h - the features of a camera that plays a recording
#pragma once

#include "pxnc/recording/frame_player.h"
#include "pxnc/skeleton/backend.h"
#include "pxnc/skeleton/feature_module.h"

#include <atomic>
#include <memory>
#include <string>

namespace playback {

/// How the camera is called: as the one that was recorded where that is known.
struct CameraNames {
    explicit CameraNames(const Recording& recording);

    std::string id;
    std::string extendedId;
    std::string name; ///< the user's for it, else the model's
    std::string vendor;
    std::string model;
    std::string serial;
    std::string userName;
    std::string interfaceName;
};

/// A module that reports what hosts write, and knows the size of a frame.
class PlaybackModule final : public skeleton::FeatureModule {
public:
    PlaybackModule(skeleton::Backend& owner, Features moduleFeatures, std::uint32_t imageBytes = 0)
        : FeatureModule(std::move(moduleFeatures)), backend(owner), payload(imageBytes) {}

    /// What changes are reported for.
    void SetHandle(PxnHandle newHandle) { handle = newHandle; }
    void OnWritten(const char* name) override {
        backend.Changes().Post(handle, backend.Texts().Intern(name));
    }
    PxnError GetPayloadSize(std::uint32_t& bytes) override {
        bytes = payload;
        return payload != 0 ? PxnErrSuccess : PxnErrBadHandle;
    }

private:
    skeleton::Backend& backend;
    const std::uint32_t payload;
    std::atomic<PxnHandle> handle = nullptr;
};

///@{
/// The modules. Those of an open camera share its player.
std::shared_ptr<PlaybackModule> MakeSystemModule(skeleton::Backend& backend);
std::shared_ptr<PlaybackModule> MakeTransportLayerModule(skeleton::Backend& backend);
std::shared_ptr<PlaybackModule> MakeInterfaceModule(skeleton::Backend& backend,
                                                    const CameraNames& names);
std::shared_ptr<PlaybackModule> MakeCameraModule(skeleton::Backend& backend,
                                                 const Recording& recording,
                                                 const CameraNames& names,
                                                 const std::shared_ptr<FramePlayer>& player);
std::shared_ptr<PlaybackModule> MakeLocalDeviceModule(skeleton::Backend& backend,
                                                      const CameraNames& names);
std::shared_ptr<PlaybackModule> MakeStreamModule(skeleton::Backend& backend,
                                                 const Recording& recording);
///@}

} // namespace playback
