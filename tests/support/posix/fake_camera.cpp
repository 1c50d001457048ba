// fake_camera.cpp - the fake GigE Vision camera that Aravis brings, as a child process
#include "tests/support/posix/fake_camera.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace support {

namespace {

constexpr char kProgram[] = "arv-fake-gv-camera-0.8";

std::string NewSerial() {
    static int number = 0;
    return "T" + std::to_string(getpid()) + "N" + std::to_string(++number);
}

} // namespace

FakeCamera::FakeCamera(const std::string& descriptionFile)
    : serial(NewSerial()), description(descriptionFile) {
    Restart();
}

FakeCamera::~FakeCamera() {
    Kill();
}

void FakeCamera::Kill() {
    if (process > 0) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
        process = -1;
    }
}

void FakeCamera::Freeze() {
    EXPECT_EQ(kill(process, SIGSTOP), 0);
}

void FakeCamera::Thaw() {
    EXPECT_EQ(kill(process, SIGCONT), 0);
}

void FakeCamera::Restart(unsigned lostPerThousand) {
    Kill();
    const std::string lost = std::to_string(lostPerThousand);
    std::vector<const char*> arguments = {kProgram,       "-i", "127.0.0.1", "-s",
                                          serial.c_str(), "-r", lost.c_str()};
    if (!description.empty()) {
        arguments.insert(arguments.end(), {"-g", description.c_str()});
    }
    arguments.push_back(nullptr);
    const pid_t parent = getpid();
    process = fork();
    if (process != 0) {
        EXPECT_GT(process, 0);
        return;
    }
    // The camera must not outlive the test program, even when that crashes.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(1);
    }
    execvp(kProgram, const_cast<char* const*>(arguments.data()));
    _exit(127);
}

} // namespace support
