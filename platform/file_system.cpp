// file_system.cpp - paths and whole files, the same on all platforms
#include "platform/file_system.h"

#include "platform/output_file.h"
#include "platform/path_rules.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

namespace platform {

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

std::string DirectoryOf(const std::string& path) {
    const std::size_t root = RootLength(path);
    std::size_t end = path.size();
    while (end > root && !IsSeparator(path[end - 1])) {
        --end;
    }
    while (end > root && IsSeparator(path[end - 1])) {
        --end;
    }
    return path.substr(0, end);
}

std::string JoinPath(const std::string& directory, const std::string& name) {
    if (directory.empty()) {
        return name;
    }
    // "C:name" is relative to the current directory of the drive; a separator would change that.
    if (IsSeparator(directory.back()) || directory.size() == RootLength(directory)) {
        return directory + name;
    }
    return directory + kPathSeparator + name;
}

bool ReadWholeFile(const std::string& path, std::string& content, std::string* error) {
    const std::unique_ptr<std::FILE, FileCloser> file(OpenForReading(path));
    std::string read;
    bool done = false;
    if (file) {
        char block[16384];
        std::size_t count = 0;
        while ((count = std::fread(block, 1, sizeof block, file.get())) > 0) {
            read.append(block, count);
        }
        done = std::ferror(file.get()) == 0;
    }
    if (!done) {
        if (error) {
            *error = std::generic_category().message(errno);
        }
        return false;
    }
    content.swap(read);
    return true;
}

bool ReplaceWholeFile(const std::string& path, const std::string& content, std::string* error) {
    OutputFile file;
    return file.Create(path, error) && file.Append({{content.data(), content.size()}}, error) &&
           file.Finish(true, error);
}

} // namespace platform
