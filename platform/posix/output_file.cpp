// output_file.cpp - a file that gets its name when it is whole, on POSIX
#include "platform/output_file.h"

#include "platform/file_system.h"
#include "platform/path_rules.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace platform {

namespace {

constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kWriteBits = 0222;
constexpr mode_t kNewFileMode = 0666;

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
    const int opened =
        open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0) {
        fsync(opened);
        close(opened);
    }
}

bool Report(bool isDone, std::string* error) {
    if (!isDone && error) {
        *error = std::generic_category().message(errno);
    }
    return isDone;
}

} // namespace

bool OutputFile::IsOpen() const {
    return file >= 0;
}

bool OutputFile::Create(const std::string& path, std::string* error) {
    return Report(CreateBeside(path), error);
}

bool OutputFile::CreateBeside(const std::string& path) {
    if (path.find('\0') != std::string::npos) {
        errno = EINVAL; // the system would take what is before it for the name
        return false;
    }
    finalPath = path;
    if (!FollowSymbolicLinks(finalPath)) {
        return false;
    }
    struct stat existing {};
    const bool exists = stat(finalPath.c_str(), &existing) == 0;
    if (exists ? !IsReplaceable(finalPath, existing) : errno != ENOENT) {
        return false;
    }
    file = CreateFileBeside(finalPath, temporary);
    size = 0;
    isTooLong = false;
    if (file < 0) {
        return false;
    }
    if (exists && !TakeOverAttributes(static_cast<int>(file), existing)) {
        const int reason = errno;
        Discard();
        errno = reason;
        return false;
    }
    return true;
}

bool OutputFile::Append(std::initializer_list<Piece> pieces, std::string* error) {
    std::uint64_t end = size;
    for (const Piece& piece : pieces) {
        if (!WriteAt(end, piece)) {
            const int reason = errno;
            isTooLong = true;
            CutBack(); // tried again before the file gets its name
            errno = reason;
            return Report(false, error);
        }
        end += piece.size;
    }
    size = end;
    return true;
}

bool OutputFile::Overwrite(std::uint64_t offset, Piece piece, std::string* error) {
    return Report(WriteAt(offset, piece), error);
}

bool OutputFile::WriteAt(std::uint64_t offset, Piece piece) {
    const auto* const data = static_cast<const char*>(piece.data);
    std::size_t done = 0;
    while (done < piece.size) {
        const ssize_t count = pwrite(static_cast<int>(file), data + done, piece.size - done,
                                     static_cast<off_t>(offset + done));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
}

bool OutputFile::CutBack() {
    if (isTooLong && ftruncate(static_cast<int>(file), static_cast<off_t>(size)) == 0) {
        isTooLong = false;
    }
    return !isTooLong;
}

bool OutputFile::Finish(bool isDurable, std::string* error) {
    const bool isDone = CloseAndRename(isDurable);
    if (!isDone) {
        const int reason = errno;
        Discard();
        if (!temporary.empty()) {
            unlink(temporary.c_str()); // closed, but not renamed
        }
        errno = reason;
    }
    temporary.clear();
    return Report(isDone, error);
}

bool OutputFile::CloseAndRename(bool isDurable) {
    // Computed here, since it may throw and nothing may fail after the rename.
    const std::string directory = DirectoryOf(finalPath);
    if (!CutBack() || (isDurable && fsync(static_cast<int>(file)) != 0) ||
        close(static_cast<int>(std::exchange(file, -1))) != 0 ||
        rename(temporary.c_str(), finalPath.c_str()) != 0) {
        return false;
    }
    if (isDurable) {
        FlushDirectory(directory);
    }
    return true;
}

void OutputFile::Discard() noexcept {
    if (file >= 0) {
        close(static_cast<int>(std::exchange(file, -1)));
        unlink(temporary.c_str());
        temporary.clear();
    }
}

} // namespace platform
