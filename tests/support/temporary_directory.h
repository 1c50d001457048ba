// temporary_directory.h - a directory that is removed after a test
#pragma once

#include <string>

namespace support {

/// An empty directory that is removed with its contents when the object is destroyed. Names are
/// relative to it and may contain directories, which Write creates.
class TemporaryDirectory {
public:
    /// Throws std::runtime_error when the directory cannot be created.
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& Path() const { return path; }
    /// Path of `name`, which need not exist.
    std::string PathOf(const std::string& name) const;
    /// Writes a file and returns its path. The test fails when that is impossible.
    std::string Write(const std::string& name, const std::string& content) const;
    /// Content of a file. The test fails when it cannot be read.
    std::string Read(const std::string& name) const;

private:
    std::string path;
};

} // namespace support
