// file_lock.cpp - lock files on Windows
#include "platform/file_lock.h"

#include "platform/win32/last_error.h"

#include <windows.h>

#include <utility>

namespace platform {

// The file is opened without sharing it, which is the lock, and removed with its last handle, also
// when the process is terminated.
FileLock::Attempt FileLock::TryLock(std::string& reason) {
    const HANDLE handle =
        CreateFileA(lockName.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr,
                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (handle != INVALID_HANDLE_VALUE) {
        file = reinterpret_cast<std::intptr_t>(handle);
        return Attempt::kLocked;
    }
    const DWORD failure = GetLastError();
    if (failure == ERROR_SHARING_VIOLATION) {
        return Attempt::kHeld;
    }
    reason = SystemErrorText(failure);
    // A file that is being removed cannot be opened.
    return failure == ERROR_ACCESS_DENIED ? Attempt::kPerhapsHeld : Attempt::kFailed;
}

void FileLock::Release() noexcept {
    if (file != -1) {
        CloseHandle(reinterpret_cast<HANDLE>(std::exchange(file, -1)));
    }
}

} // namespace platform
