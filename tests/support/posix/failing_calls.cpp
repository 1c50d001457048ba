// failing_calls.cpp - functions of the C library that fail on demand
#include "tests/support/posix/failing_calls.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

#include <ifaddrs.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {

std::atomic<const char*> failingFunction{nullptr};
std::atomic<int> failingCode{0};
std::atomic<int> sparedCalls{0};
std::atomic<int> callsToFail{0};
std::atomic<int> failedCalls{0};

/// True, with errno set, when this call has to fail.
bool HasToFail(const char* function) {
    const char* const failing = failingFunction;
    if (!failing || std::strcmp(failing, function) != 0 || sparedCalls.fetch_sub(1) > 0 ||
        callsToFail.fetch_sub(1) <= 0) {
        return false;
    }
    ++failedCalls;
    errno = failingCode;
    return true;
}

} // namespace

// The program's calls come here, as it is linked with --wrap.
#define SUPPORT_FAILING(type, name, failure, parameters, arguments)                                \
    extern "C" type __real_##name parameters;                                                      \
    extern "C" type __wrap_##name parameters;                                                      \
    extern "C" type __wrap_##name parameters {                                                     \
        return HasToFail(#name) ? (failure) : __real_##name arguments;                             \
    }

SUPPORT_FAILING(ssize_t, read, -1, (int file, void* to, std::size_t size), (file, to, size))
SUPPORT_FAILING(ssize_t, write, -1, (int file, const void* from, std::size_t size),
                (file, from, size))
SUPPORT_FAILING(ssize_t, pwrite, -1, (int file, const void* from, std::size_t size, off_t offset),
                (file, from, size, offset))
SUPPORT_FAILING(int, ftruncate, -1, (int file, off_t size), (file, size))
SUPPORT_FAILING(ssize_t, send, -1, (int file, const void* from, std::size_t size, int flags),
                (file, from, size, flags))
// The descriptor is given back all the same.
SUPPORT_FAILING(int, close, (__real_close(file), errno = failingCode, -1), (int file), (file))
SUPPORT_FAILING(int, pipe2, -1, (int* ends, int flags), (ends, flags))
SUPPORT_FAILING(int, socketpair, -1, (int family, int type, int protocol, int* ends),
                (family, type, protocol, ends))
SUPPORT_FAILING(int, socket, -1, (int family, int type, int protocol), (family, type, protocol))
SUPPORT_FAILING(int, setsockopt, -1,
                (int file, int level, int option, const void* value, socklen_t size),
                (file, level, option, value, size))
SUPPORT_FAILING(int, bind, -1, (int file, const sockaddr* address, socklen_t size),
                (file, address, size))
SUPPORT_FAILING(ssize_t, recvfrom, -1,
                (int file, void* to, std::size_t size, int flags, sockaddr* address,
                 socklen_t* addressSize),
                (file, to, size, flags, address, addressSize))
SUPPORT_FAILING(int, getifaddrs, -1, (ifaddrs * *first), (first))
SUPPORT_FAILING(int, clock_gettime, -1, (clockid_t clock, timespec* time), (clock, time))
SUPPORT_FAILING(int, sigaction, -1,
                (int number, const struct sigaction* action, struct sigaction* before),
                (number, action, before))
SUPPORT_FAILING(int, lstat, -1, (const char* path, struct stat* status), (path, status))
SUPPORT_FAILING(int, flock, -1, (int file, int operation), (file, operation))
SUPPORT_FAILING(int, fstat, -1, (int file, struct stat* status), (file, status))
SUPPORT_FAILING(void*, mmap, MAP_FAILED,
                (void* address, std::size_t size, int protection, int flags, int file,
                 off_t offset),
                (address, size, protection, flags, file, offset))
SUPPORT_FAILING(int, fsync, -1, (int file), (file))
SUPPORT_FAILING(int, fchown, -1, (int file, uid_t user, gid_t group), (file, user, group))
SUPPORT_FAILING(uid_t, geteuid, 1, (), ())
SUPPORT_FAILING(int, tcgetattr, -1, (int file, termios* settings), (file, settings))
SUPPORT_FAILING(int, tcsetattr, -1, (int file, int when, const termios* settings),
                (file, when, settings))
SUPPORT_FAILING(int, tcflush, -1, (int file, int queue), (file, queue))
SUPPORT_FAILING(int, cfsetispeed, -1, (termios * settings, speed_t speed), (settings, speed))
SUPPORT_FAILING(int, cfsetospeed, -1, (termios * settings, speed_t speed), (settings, speed))
SUPPORT_FAILING(speed_t, cfgetospeed, B0, (const termios* settings), (settings))
SUPPORT_FAILING(int, pthread_attr_init, ENOMEM, (pthread_attr_t * attributes), (attributes))
SUPPORT_FAILING(int, pthread_attr_setstacksize, EINVAL,
                (pthread_attr_t * attributes, std::size_t size), (attributes, size))
#undef SUPPORT_FAILING

namespace support {

FailingCalls::FailingCalls(const char* function, int code, int count, int spared) {
    failedCalls = 0;
    failingCode = code;
    callsToFail = count;
    sparedCalls = spared;
    failingFunction = function;
}

FailingCalls::~FailingCalls() {
    failingFunction = nullptr;
}

int FailingCalls::Failed() const {
    return failedCalls;
}

} // namespace support
