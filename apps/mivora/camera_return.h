// camera_return.h - waits for a camera that is not there, and sets it up as it was
#pragma once

#include "apps/common/feature_assignment.h"
#include "apps/common/host_image.h"

#include <cstdint>
#include <string>
#include <vector>

class Session;

/// What --reconnect does. Reports on standard error that it waits, and what came of it. One thread.
class CameraReturn {
public:
    /// `assignmentsToRepeat` is applied to a camera that is back, before its kept settings.
    CameraReturn(Session& waitingSession,
                 const std::vector<FeatureAssignment>& assignmentsToRepeat);
    ~CameraReturn();
    CameraReturn(const CameraReturn&) = delete;
    CameraReturn& operator=(const CameraReturn&) = delete;

    /// Initialises the session and opens the wanted camera; waits while it is not there. False if
    /// the user interrupts.
    bool OpenFirst();
    /// Keeps all settings of the open camera, whose acquisition does not run, and the layout of its
    /// images.
    void KeepSettings();
    /// Closes the camera that is gone, waits until it is back, opens it and restores its settings.
    /// `lastSeen` is when it was last there, as platform::MonotonicNanoseconds counts. False if the
    /// user interrupts. Throws CommandFailure if the camera is back and is not as it was.
    bool Await(std::uint64_t lastSeen);

    /// How often it has come back.
    std::uint64_t Times() const { return times; }

private:
    void WaitForChange();
    bool OpenAgain(std::uint32_t uniqueId);
    void RestoreSettings();

    Session& session;
    const std::vector<FeatureAssignment>& assignments;
    std::string directory; // of the file of settings; empty without one
    ImageLayout layout;
    std::uint64_t times = 0;
};
