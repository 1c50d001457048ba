// temporary_directory.h - a directory that lives as long as a test
#pragma once

#include <string>

namespace support {

/// A fresh directory, removed with all that is in it at the end. Names are relative to it and may
/// have directories of their own, which Write makes.
class TemporaryDirectory {
public:
    /// Throws when no directory can be made.
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& Path() const { return path; }
    /// The path that `name` has or would have.
    std::string PathOf(const std::string& name) const;
    /// Writes a file and returns its path; a failure fails the test.
    std::string Write(const std::string& name, const std::string& content) const;
    /// A file's whole content; a failure fails the test.
    std::string Read(const std::string& name) const;

private:
    std::string path;
};

} // namespace support
