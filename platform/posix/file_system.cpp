// file_system.cpp - paths and files on POSIX
#include "platform/file_system.h"

#include "platform/path_rules.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace platform {

namespace {

namespace fs = std::filesystem;

constexpr int kMostSymbolicLinks = 40;

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

} // namespace platform
