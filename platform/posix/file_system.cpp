// file_system.cpp - paths and files on POSIX
#include "platform/file_system.h"

#include "platform/path_rules.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace platform {

namespace {

namespace fs = std::filesystem;

constexpr int kMostSymbolicLinks = 40;
constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kWriteBits = 0222;
constexpr mode_t kNewFileMode = 0666;

class FileDescriptor {
public:
    explicit FileDescriptor(int openDescriptor) : descriptor(openDescriptor) {}
    ~FileDescriptor() { Close(); }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    bool IsOpen() const { return descriptor >= 0; }
    int Get() const { return descriptor; }
    bool Close() { return descriptor < 0 || close(std::exchange(descriptor, -1)) == 0; }

private:
    int descriptor;
};

// Creates a file with a unique name in the directory of `path`; -1 with errno set on failure.
int CreateFileBeside(const std::string& path, std::string& name) {
    static std::atomic<unsigned> nextNumber{0};
    int descriptor = -1;
    do {
        name = path + "." + std::to_string(getpid()) + "." + std::to_string(nextNumber++) + ".tmp";
        descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
    } while (descriptor < 0 && errno == EEXIST);
    return descriptor;
}

bool WriteAll(int descriptor, const std::string& content) {
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = write(descriptor, content.data() + done, content.size() - done);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
}

// Copies owner and permissions of the replaced file. Only root can change the owner, so failing to
// do so is an error for root alone. The permissions must be kept: they control who has access.
bool TakeOverAttributes(int descriptor, const struct stat& existing) {
    if (fchown(descriptor, existing.st_uid, existing.st_gid) != 0 && geteuid() == 0) {
        return false;
    }
    return fchmod(descriptor, existing.st_mode & kPermissionBits) == 0;
}

// False with errno set when `existing` is not a regular file or is read-only.
// Compatibility: a file is protected by making it read-only. For root, access() would ignore that,
// so the mode is checked first.
bool IsReplaceable(const std::string& path, const struct stat& existing) {
    if (S_ISDIR(existing.st_mode)) {
        errno = EISDIR;
        return false;
    }
    if (!S_ISREG(existing.st_mode)) {
        errno = EINVAL;
        return false;
    }
    if ((existing.st_mode & kWriteBits) == 0) {
        errno = EACCES;
        return false;
    }
    return access(path.c_str(), W_OK) == 0;
}

// Ignores errors: the file has already been renamed, and that cannot be undone.
void FlushDirectory(const std::string& directory) noexcept {
    const FileDescriptor opened(
        open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.IsOpen()) {
        fsync(opened.Get());
    }
}

// Returns false with errno set on failure.
bool Replace(std::string path, const std::string& content) {
    if (!FollowSymbolicLinks(path)) {
        return false;
    }
    struct stat existing {};
    const bool exists = stat(path.c_str(), &existing) == 0;
    if (exists ? !IsReplaceable(path, existing) : errno != ENOENT) {
        return false;
    }
    // Computed here, since it may throw and nothing may fail after the rename.
    const std::string directory = DirectoryOf(path);
    std::string temporary;
    FileDescriptor file(CreateFileBeside(path, temporary));
    if (!file.IsOpen()) {
        return false;
    }
    if ((exists && !TakeOverAttributes(file.Get(), existing)) || !WriteAll(file.Get(), content) ||
        fsync(file.Get()) != 0 || !file.Close() || rename(temporary.c_str(), path.c_str()) != 0) {
        const int reason = errno;
        unlink(temporary.c_str());
        errno = reason;
        return false;
    }
    FlushDirectory(directory);
    return true;
}

} // namespace

const char kPathSeparator = '/';

bool IsSeparator(char character) {
    return character == '/';
}

std::size_t RootLength(const std::string& path) {
    return !path.empty() && IsSeparator(path[0]) ? 1 : 0;
}

bool FollowSymbolicLinks(std::string& path) {
    for (int links = 0; links < kMostSymbolicLinks; ++links) {
        std::error_code failure;
        const fs::path target = fs::read_symlink(path, failure);
        if (failure) {
            return true;
        }
        path = (fs::path(path).parent_path() / target).string();
    }
    errno = ELOOP;
    return false;
}

std::FILE* OpenForReading(const std::string& path) {
    return std::fopen(path.c_str(), "rb");
}

std::string LibraryFileName(const char* baseName) {
    return "lib" + std::string(baseName) + ".so";
}

std::string FullPath(const std::string& path, std::size_t limit) {
    std::error_code failure;
    std::string full;
    if (!path.empty()) {
        full = fs::absolute(path, failure).string();
    }
    return failure || full.size() >= limit ? std::string() : full;
}

bool PathExists(const std::string& path) {
    std::error_code failure;
    return fs::exists(path, failure);
}

bool IsRegularFile(const std::string& path) {
    std::error_code failure;
    return fs::is_regular_file(path, failure);
}

bool IsDirectory(const std::string& path) {
    std::error_code failure;
    return fs::is_directory(path, failure);
}

bool CreateDirectories(const std::string& path) {
    std::error_code failure;
    fs::create_directories(path, failure);
    return IsDirectory(path);
}

std::string CreateTemporaryDirectory(const char* prefix) {
    std::error_code failure;
    std::string path = (fs::temp_directory_path(failure) / prefix).string() + "XXXXXX";
    return !failure && mkdtemp(path.data()) ? path : std::string();
}

bool RemoveDirectoryTree(const std::string& path) {
    if (!IsDirectory(path)) {
        return !PathExists(path);
    }
    std::error_code failure;
    fs::remove_all(path, failure);
    return !failure;
}

std::string ExecutablePath() {
    std::error_code failure;
    return fs::read_symlink("/proc/self/exe", failure).string();
}

bool ReplaceWholeFile(const std::string& path, const std::string& content, std::string* error) {
    const bool replaced = Replace(path, content);
    if (!replaced && error) {
        *error = std::generic_category().message(errno);
    }
    return replaced;
}

} // namespace platform
