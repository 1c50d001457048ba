// fake_camera.h - the fake GigE Vision camera that Aravis brings, as a child process
#pragma once

#include "tests/support/posix/fake_camera_turn.h"

#include <string>
#include <sys/types.h>

namespace support {

/// A camera on 127.0.0.1 with a unique serial number. GigE Vision prescribes the port number, so
/// only one camera can run at a time; concurrent test programs take turns.
class FakeCamera {
public:
    /// Waits for its turn and starts the camera. `description` is the path of a GenICam description
    /// to use; empty for the default one. Throws std::runtime_error when another program keeps the
    /// camera or its port.
    explicit FakeCamera(const std::string& description = {});
    /// Ends the camera and its turn.
    ~FakeCamera();
    FakeCamera(const FakeCamera&) = delete;
    FakeCamera& operator=(const FakeCamera&) = delete;

    /// The identifiers that the SDK lists it under.
    std::string PlainId() const { return "Aravis-Fake-" + serial; }
    std::string ExtendedId() const { return "GEV:" + PlainId(); }
    const std::string& Serial() const { return serial; }

    /// Unplugs the camera: its process is killed and does not notify the controlling application.
    void Kill();
    /// Starts the camera again with the same serial number. `lostPerThousand` of the packets of its
    /// stream are not sent, taken at random.
    void Restart(unsigned lostPerThousand = 0);
    /// The camera does nothing until Thaw: it neither sends nor replies.
    void Freeze();
    void Thaw();

private:
    const std::string serial;
    const std::string description;
    const FakeCameraTurn turn;
    pid_t process = -1;
};

} // namespace support
