// file_version.h - version numbers of a library file
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

/// The version block of a file. On Windows this is its version resource. Elsewhere it is the
/// version suffix of the file name after links are resolved (`libPxnC.so.2.1.0.7`): one to four
/// numbers from 0 to 65535, missing ones count as 0; with any other suffix the file has no version
/// block. One thread at a time.
class FileVersion {
public:
    FileVersion();
    ~FileVersion();
    FileVersion(FileVersion&& other) noexcept;
    FileVersion& operator=(FileVersion&& other) noexcept;

    /// Reads the version block of `path` in place of the current one. False when there is none, or
    /// when out of memory; HasBlock then returns false.
    bool Read(const std::string& path);
    void Clear();
    bool HasBlock() const;
    /// Number `part` of the version, 0 (major) to 3. 65535 for any other `part`, when there is no
    /// version block, and when the block has no fixed file information.
    // Compatibility: hosts show these numbers in the driver's version text, where 65535 stands for
    // an unknown version.
    std::uint16_t Part(unsigned part) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
