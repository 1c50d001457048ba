// state_board.h - what is known of the camera, for all who ask
#pragma once

#include "apps/common/continuous_grab.h"
#include "apps/common/host_image.h"
#include "apps/common/known_camera.h"
#include "apps/common/packet_statistics.h"
#include "platform/condition.h"
#include "platform/mutex.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A recording that is made, or the last one that was.
struct RecordingState {
    std::string directory; ///< its name among the recordings
    std::uint64_t written = 0;
    std::uint64_t taken = 0;
    std::uint64_t wanted = 0;
    std::uint64_t lost = 0;
    std::uint64_t waiting = 0;
    bool isDone = false;
    std::string error; ///< empty without one
};

struct ServeState {
    std::optional<KnownCamera> camera; ///< that is open, or was before it went
    bool isOpen = false;
    bool isGrabbing = false;
    bool isGone = false; ///< it comes back when it is there again
    std::optional<ImageLayout> image;
    std::string pixelFormat;
    FrameAccount account;
    double rate = 0;                           ///< frames a second over the last one
    std::shared_ptr<const FrameTiming> timing; ///< null before the first frame
    PacketStatistics packets;
    std::uint64_t waitingFrames = 0;    ///< in the host's ring
    std::optional<double> temperatureC; ///< of the camera, where it has a sensor
    std::optional<RecordingState> recording;
    bool hasSimulatorControl = false;
    std::vector<KnownCamera> cameras; ///< all that are there
};

/// The state, which few threads write and any number reads without waiting for the camera. The lock
/// is held for moments only.
class StateBoard {
public:
    struct Reading {
        std::uint64_t version = 0; ///< greater after each change
        std::uint64_t camerasVersion = 0;
        ServeState state;
    };

    void Change(const std::function<void(ServeState& state)>& change);
    void ChangeCameras(std::vector<KnownCamera> cameras);
    Reading Read() const;

private:
    mutable platform::Mutex mutex;
    Reading reading GUARDED_BY(mutex);
};

/// The members of a camera's object; with "open".
std::string CameraJson(const KnownCamera& camera, bool isOpen);
std::string CamerasJson(const ServeState& state);
std::string StateJson(const ServeState& state);
