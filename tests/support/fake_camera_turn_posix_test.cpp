// fake_camera_turn_posix_test.cpp - taking turns at the fake camera
#include "tests/support/posix/fake_camera_turn.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

namespace support {
namespace {

class FakeCameraTurnTest : public testing::Test {
protected:
    /// A UDP port of 127.0.0.1 that the system has chosen, with a socket bound to it.
    FakeCameraTurnTest() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(bind(user, reinterpret_cast<sockaddr*>(&address), size), 0);
        EXPECT_EQ(getsockname(user, reinterpret_cast<sockaddr*>(&address), &size), 0);
        place.port = ntohs(address.sin_port);
    }
    ~FakeCameraTurnTest() override { FreePort(); }

    void FreePort() {
        if (user >= 0) {
            close(user);
            user = -1;
        }
    }

    std::string ReasonOfRefusal() const {
        try {
            const FakeCameraTurn turn(place);
        } catch (const std::runtime_error& refusal) {
            return refusal.what();
        }
        return "";
    }

    TemporaryDirectory directory;
    int user = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    FakeCameraPlace place{directory.PathOf("turn.lock"), 0, 60, 60};
};

TEST_F(FakeCameraTurnTest, IsOneProgramsAtATime) {
    FreePort();
    std::optional<FakeCameraTurn> first(std::in_place, place);
    EXPECT_EQ(ReasonOfRefusal(),
              "no fake camera: another program has held " + place.lockFile + " for 60 ms");
    first.reset();
    EXPECT_EQ(ReasonOfRefusal(), "");
}

TEST_F(FakeCameraTurnTest, WaitsForAPortInUse) {
    EXPECT_EQ(ReasonOfRefusal(),
              "no fake camera: UDP port " + std::to_string(place.port) +
                  " of 127.0.0.1 is in use; end the camera that was started outside the tests");
    place.portLimitMs = 60000;
    std::thread freeing([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        FreePort();
    });
    EXPECT_EQ(ReasonOfRefusal(), "");
    freeing.join();
}

TEST_F(FakeCameraTurnTest, EndsWithAProgramThatIsKilled) {
    FreePort();
    int toParent[2];
    ASSERT_EQ(pipe(toParent), 0);
    const pid_t child = fork();
    if (child == 0) {
        const FakeCameraTurn turn(place);
        if (write(toParent[1], "x", 1) == 1) {
            pause();
        }
        _exit(1);
    }
    char byte = 0;
    ASSERT_EQ(read(toParent[0], &byte, 1), 1);
    EXPECT_NE(ReasonOfRefusal(), "");
    kill(child, SIGKILL);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(ReasonOfRefusal(), "");
    close(toParent[0]);
    close(toParent[1]);
}

TEST_F(FakeCameraTurnTest, NeedsALockFile) {
    FreePort();
    place.lockFile = directory.PathOf("missing/turn.lock");
    EXPECT_EQ(ReasonOfRefusal(), "no fake camera: cannot open " + place.lockFile);
}

} // namespace
} // namespace support
