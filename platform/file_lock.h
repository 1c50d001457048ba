// file_lock.h - excludes other processes while a file is read, changed and replaced
#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// An exclusive lock on changes of a file, held on a second file beside it with the additional
/// ending ".lock". It excludes all other FileLock objects for the same file, in this process and in
/// others; programs that do not ask for the lock are not stopped. The system releases the lock of a
/// process that ends in any way. The lock file is removed on release; one that a killed process has
/// left behind is used again. One thread at a time.
class FileLock {
public:
    FileLock() = default;
    ~FileLock() { Release(); }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Locks changes of the file `path`, which need not exist, and releases what this object has
    /// locked before. Waits up to `timeoutMs` milliseconds of MonotonicNanoseconds for another
    /// holder. On POSIX the lock of a symbolic link is that of its target. Returns false on timeout
    /// or when the lock file cannot be opened, and stores a message in `error` (unless null).
    bool Acquire(const std::string& path, std::uint32_t timeoutMs, std::string* error = nullptr);
    /// Does nothing when nothing is locked.
    void Release() noexcept;

private:
    enum class Attempt {
        kLocked,
        kHeld,        ///< by another FileLock
        kPerhapsHeld, ///< the system's error does not distinguish this from a permanent failure
        kFailed,
    };

    /// Tries once to lock the file `lockName`; with kPerhapsHeld and kFailed stores the system's
    /// message.
    Attempt TryLock(std::string& reason);

    std::string lockName;
    std::intptr_t file = -1; ///< descriptor or handle of the lock file; -1 when nothing is locked
};

} // namespace platform
