// fake_camera_turn.h - the right to run the fake GigE Vision camera
#pragma once

#include <cstdint>
#include <string>

namespace support {

/// Where programs take turns at the fake camera, and how long they wait.
struct FakeCameraPlace {
    std::string lockFile = "/tmp/pyxen-fake-camera.lock";
    std::uint16_t port = 3956; ///< UDP, prescribed by GigE Vision
    unsigned lockLimitMs = 600'000;
    unsigned portLimitMs = 10'000;
};

/// Excludes other test programs from running a fake camera. A program that ends in any way gives up
/// its turn.
class FakeCameraTurn {
public:
    /// Waits until no other program has its turn and no socket is bound to the port. Throws
    /// std::runtime_error at the limits.
    explicit FakeCameraTurn(const FakeCameraPlace& place = {});
    ~FakeCameraTurn();
    FakeCameraTurn(const FakeCameraTurn&) = delete;
    FakeCameraTurn& operator=(const FakeCameraTurn&) = delete;

private:
    const int lockFile;
};

} // namespace support
