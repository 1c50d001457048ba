// fake_camera_turn.cpp - the right to run the fake GigE Vision camera
#include "tests/support/posix/fake_camera_turn.h"

#include "tests/support/wait_until.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

namespace support {

namespace {

// Another user's lock file can be locked without the right to write to it.
int OpenLock(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
    return descriptor < 0 && errno == EACCES ? open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW)
                                             : descriptor;
}

bool IsPortFree(std::uint16_t port) {
    const int probe = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool isBound =
        bind(probe, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(probe);
    return isBound;
}

} // namespace

FakeCameraTurn::FakeCameraTurn(const FakeCameraPlace& place) : lockFile(OpenLock(place.lockFile)) {
    std::string failure;
    if (lockFile < 0) {
        failure = "cannot open " + place.lockFile;
    } else if (!WaitUntil([&] { return flock(lockFile, LOCK_EX | LOCK_NB) == 0; },
                          place.lockLimitMs)) {
        failure = "another program has held " + place.lockFile + " for " +
                  std::to_string(place.lockLimitMs) + " ms";
    } else if (!WaitUntil([&] { return IsPortFree(place.port); }, place.portLimitMs)) {
        failure = "UDP port " + std::to_string(place.port) +
                  " of 127.0.0.1 is in use; end the camera that was started outside the tests";
    }
    if (!failure.empty()) {
        close(lockFile);
        throw std::runtime_error("no fake camera: " + failure);
    }
}

FakeCameraTurn::~FakeCameraTurn() {
    // Closing alone would not end the turn while a child process has a copy of the descriptor.
    flock(lockFile, LOCK_UN);
    close(lockFile);
}

} // namespace support
