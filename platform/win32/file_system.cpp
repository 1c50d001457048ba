// file_system.cpp - paths and files on Windows
#include "platform/file_system.h"

#include "platform/path_rules.h"

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

} // namespace platform
