// mapped_file.cpp - mapped files on POSIX
#include "platform/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace platform {

namespace {

constexpr mode_t kMappedFileMode = 0666;

bool IsRegularFileItself(const char* path) {
    struct stat status {};
    return lstat(path, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

bool MappedFile::Create(const std::string& path, std::size_t byteCount, std::string* error) {
    const auto fail = [error](int failure) {
        if (error) {
            *error = std::generic_category().message(failure);
        }
        return false;
    };
    // Not truncated: a process that has the old file mapped would crash.
    if (IsRegularFileItself(path.c_str())) {
        unlink(path.c_str());
    }
    const int descriptor =
        open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kMappedFileMode);
    if (descriptor < 0) {
        return fail(errno);
    }
    // A full disk would otherwise end the process at some later access.
    int failure = posix_fallocate(descriptor, 0, static_cast<off_t>(byteCount));
    if (failure == 0) {
        void* const mapped =
            mmap(nullptr, byteCount, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
        if (mapped != MAP_FAILED) {
            data = static_cast<std::byte*>(mapped);
            size = byteCount;
            file = descriptor;
            return true;
        }
        failure = errno;
    }
    close(descriptor);
    unlink(path.c_str());
    return fail(failure);
}

void MappedFile::Close(std::size_t byteCount) noexcept {
    if (!data) {
        return;
    }
    munmap(std::exchange(data, nullptr), std::exchange(size, 0));
    const int descriptor = static_cast<int>(std::exchange(file, -1));
    // A file that stays longer is read all the same.
    static_cast<void>(ftruncate(descriptor, static_cast<off_t>(byteCount)) == 0);
    close(descriptor);
}

} // namespace platform
