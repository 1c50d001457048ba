// fake_camera.h - the fake GigE Vision camera that Aravis brings, as a child process
#pragma once

#include <string>
#include <sys/types.h>

namespace support {

/// A camera on 127.0.0.1 with a serial number of its own. GigE Vision fixes the port, so a machine
/// has room for one: a lock file makes test programs that run at the same time take turns.
class FakeCamera {
public:
    /// Waits for its turn and starts the camera; `description` is a file with another GenICam
    /// description, empty for the camera's own.
    explicit FakeCamera(const std::string& description = {});
    /// Ends the camera and lets the next one have its turn.
    ~FakeCamera();
    FakeCamera(const FakeCamera&) = delete;
    FakeCamera& operator=(const FakeCamera&) = delete;

    /// The identifiers under which the library lists it.
    std::string PlainId() const { return "Aravis-Fake-" + serial; }
    std::string ExtendedId() const { return "GEV:" + PlainId(); }
    const std::string& Serial() const { return serial; }

    /// Pulls the plug: the process ends without a word to whoever controls the camera.
    void Kill();
    /// Starts the camera again with the same serial number.
    void Restart();

private:
    const std::string serial;
    const std::string description;
    int lockFile = -1;
    pid_t process = -1;
};

} // namespace support
