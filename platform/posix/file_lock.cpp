// file_lock.cpp - lock files on POSIX
#include "platform/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace platform {

namespace {

constexpr mode_t kLockFileMode = 0666;
// A pipe of that name must not block, nor a link lead elsewhere.
constexpr int kOpenFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;

// The lock file of another user can be locked without the right to write to it.
int OpenLockFile(const char* name) {
    const int descriptor = open(name, O_RDWR | O_CREAT | kOpenFlags, kLockFileMode);
    return descriptor < 0 && errno == EACCES ? open(name, O_RDONLY | kOpenFlags) : descriptor;
}

// False when the file has been removed, or replaced, since it was opened.
bool IsStillNamed(int descriptor, const char* name) {
    struct stat opened {};
    struct stat named {};
    return fstat(descriptor, &opened) == 0 && lstat(name, &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

FileLock::Attempt FileLock::TryLock(std::string& reason) {
    const int descriptor = OpenLockFile(lockName.c_str());
    if (descriptor < 0) {
        reason = std::generic_category().message(errno);
        return Attempt::kFailed;
    }
    if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        const int failure = errno;
        close(descriptor);
        if (failure == EWOULDBLOCK || failure == EINTR) {
            return Attempt::kHeld;
        }
        reason = std::generic_category().message(failure);
        return Attempt::kFailed;
    }
    // The former holder may have removed the file between opening and locking it. Then another
    // process can lock a new one.
    if (!IsStillNamed(descriptor, lockName.c_str())) {
        close(descriptor);
        return Attempt::kHeld;
    }
    file = descriptor;
    return Attempt::kLocked;
}

void FileLock::Release() noexcept {
    if (file < 0) {
        return;
    }
    const int descriptor = static_cast<int>(std::exchange(file, -1));
    // A relative name means another file once the current directory has changed.
    if (IsStillNamed(descriptor, lockName.c_str())) {
        unlink(lockName.c_str());
    }
    // Closing alone would not release it while a child process has a copy of the descriptor.
    flock(descriptor, LOCK_UN);
    close(descriptor);
}

} // namespace platform
