// file_system.cpp - paths and files on Windows
#include "platform/file_system.h"

#include "platform/clock.h"
#include "platform/path_rules.h"
#include "platform/sleep.h"
#include "platform/win32/last_error.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t kLongestPath = 32768;
constexpr std::uint64_t kOpenElsewhereLimitNs = 500'000'000;

class FileHandle {
public:
    explicit FileHandle(HANDLE openHandle) : handle(openHandle) {}
    ~FileHandle() { Close(); }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    bool IsOpen() const { return handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return handle; }
    void Detach() { handle = INVALID_HANDLE_VALUE; }
    bool Close() { return !IsOpen() || CloseHandle(std::exchange(handle, INVALID_HANDLE_VALUE)); }

private:
    HANDLE handle;
};

DWORD AttributesOf(const std::string& path) {
    return GetFileAttributesA(path.c_str());
}

bool IsDrive(const std::string& path) {
    return path.size() >= 2 && path[1] == ':' && !IsSeparator(path[0]);
}

// Unique among all running processes.
std::string UniqueNumber() {
    static std::atomic<unsigned> nextNumber{0};
    return std::to_string(GetCurrentProcessId()) + "." + std::to_string(nextNumber++);
}

// Creates a file with a unique name in the directory of `path`; INVALID_HANDLE_VALUE with the last
// error set on failure.
HANDLE CreateFileBeside(const std::string& path, std::string& name) {
    HANDLE handle = INVALID_HANDLE_VALUE;
    do {
        name = path + "." + UniqueNumber() + ".tmp";
        handle = CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    } while (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS);
    return handle;
}

bool WriteAll(HANDLE handle, const std::string& content) {
    constexpr std::size_t kMost = 1u << 30;
    std::size_t done = 0;
    while (done < content.size()) {
        const DWORD size = static_cast<DWORD>(std::min(content.size() - done, kMost));
        DWORD written = 0;
        if (!WriteFile(handle, content.data() + done, size, &written, nullptr)) {
            return false;
        }
        done += written;
    }
    return true;
}

// Windows refuses to replace a file while anybody has it open, be it for reading. Readers of small
// files are quick. Returns false with the last error set on failure.
bool RenameOver(const std::string& temporary, const std::string& path) {
    const std::uint64_t start = MonotonicNanoseconds();
    while (!MoveFileExA(temporary.c_str(), path.c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        const DWORD reason = GetLastError();
        const bool mayBeOpen = reason == ERROR_ACCESS_DENIED || reason == ERROR_SHARING_VIOLATION;
        if (!mayBeOpen || MonotonicNanoseconds() - start >= kOpenElsewhereLimitNs) {
            SetLastError(reason);
            return false;
        }
        SleepMs(1);
    }
    return true;
}

// Returns false with the last error set on failure.
bool Replace(const std::string& path, const std::string& content) {
    const DWORD attributes = AttributesOf(path);
    if (attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    std::string temporary;
    FileHandle file(CreateFileBeside(path, temporary));
    if (!file.IsOpen()) {
        return false;
    }
    if (WriteAll(file.Get(), content) && FlushFileBuffers(file.Get()) && file.Close() &&
        RenameOver(temporary, path)) {
        return true;
    }
    const DWORD reason = GetLastError();
    file.Close();
    DeleteFileA(temporary.c_str());
    SetLastError(reason);
    return false;
}

bool RemoveEntry(const std::string& path, DWORD attributes) {
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        return DeleteFileA(path.c_str()) != FALSE;
    }
    // Remove a link to a directory, not its target.
    const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return isLink ? RemoveDirectoryA(path.c_str()) != FALSE : RemoveDirectoryTree(path);
}

} // namespace

const char kPathSeparator = '\\';

bool IsSeparator(char character) {
    return character == '\\' || character == '/';
}

std::size_t RootLength(const std::string& path) {
    const std::size_t drive = IsDrive(path) ? 2 : 0;
    return drive < path.size() && IsSeparator(path[drive]) ? drive + 1 : drive;
}

bool FollowSymbolicLinks(std::string&) {
    return true;
}

std::FILE* OpenForReading(const std::string& path) {
    // The C library's own fopen does not share the file for being replaced.
    FileHandle handle(CreateFileA(path.c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!handle.IsOpen()) {
        return std::fopen(path.c_str(), "rb"); // sets errno
    }
    const int descriptor =
        _open_osfhandle(reinterpret_cast<std::intptr_t>(handle.Get()), _O_RDONLY | _O_BINARY);
    if (descriptor < 0) {
        return nullptr;
    }
    handle.Detach(); // now owned by the descriptor
    std::FILE* const file = _fdopen(descriptor, "rb");
    if (!file) {
        _close(descriptor);
    }
    return file;
}

std::string LibraryFileName(const char* baseName) {
    return std::string(baseName) + ".dll";
}

std::string FullPath(const std::string& path, std::size_t limit) {
    std::string full(std::min(limit, kLongestPath), '\0');
    const DWORD length =
        path.empty()
            ? 0
            : GetFullPathNameA(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    full.resize(length < full.size() ? length : 0);
    return full;
}

bool PathExists(const std::string& path) {
    return AttributesOf(path) != INVALID_FILE_ATTRIBUTES;
}

bool IsRegularFile(const std::string& path) {
    const DWORD attributes = AttributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES &&
           (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
}

bool IsDirectory(const std::string& path) {
    const DWORD attributes = AttributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool CreateDirectories(const std::string& path) {
    if (path.empty() || IsDirectory(path)) {
        return !path.empty();
    }
    const std::string parent = DirectoryOf(path);
    if (!parent.empty() && parent != path && !CreateDirectories(parent)) {
        return false;
    }
    // Another process may create the directory at the same time, so only the outcome counts.
    CreateDirectoryA(path.c_str(), nullptr);
    return IsDirectory(path);
}

std::string CreateTemporaryDirectory(const char* prefix) {
    char place[MAX_PATH + 1];
    const DWORD length = GetTempPathA(sizeof place, place);
    if (length == 0 || length > MAX_PATH) {
        return {};
    }
    std::string path;
    bool created = false;
    do {
        path = JoinPath(std::string(place, length), prefix + UniqueNumber());
        created = CreateDirectoryA(path.c_str(), nullptr) != FALSE;
    } while (!created && GetLastError() == ERROR_ALREADY_EXISTS);
    return created ? path : std::string();
}

bool RemoveDirectoryTree(const std::string& path) {
    if (!IsDirectory(path)) {
        return !PathExists(path);
    }
    WIN32_FIND_DATAA entry{};
    const HANDLE search = FindFirstFileA(JoinPath(path, "*").c_str(), &entry);
    bool removed = true;
    if (search != INVALID_HANDLE_VALUE) {
        do {
            const std::string name = entry.cFileName;
            if (name != "." && name != "..") {
                removed &= RemoveEntry(JoinPath(path, name), entry.dwFileAttributes);
            }
        } while (FindNextFileA(search, &entry));
        FindClose(search);
    }
    return RemoveDirectoryA(path.c_str()) && removed;
}

std::string ExecutablePath() {
    std::string path(kLongestPath, '\0');
    path.resize(GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

bool ReplaceWholeFile(const std::string& path, const std::string& content, std::string* error) {
    const bool replaced = Replace(path, content);
    if (!replaced && error) {
        *error = SystemErrorText(GetLastError());
    }
    return replaced;
}

} // namespace platform
