// temporary_file.h - a file for what is passed on by its path
#pragma once

#include "apps/common/command_failure.h"
#include "platform/file_system.h"

#include <string>

/// A name in a directory of its own, which goes with the object.
class TemporaryFile {
public:
    /// Throws CommandFailure when there is no directory for temporary files.
    explicit TemporaryFile(const std::string& name)
        : directory(platform::CreateTemporaryDirectory("mivora-")) {
        if (directory.empty()) {
            throw CommandFailure("cannot create a directory for temporary files");
        }
        path = platform::JoinPath(directory, name);
    }
    ~TemporaryFile() { platform::RemoveDirectoryTree(directory); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Path() const { return path; }

private:
    const std::string directory;
    std::string path;
};
