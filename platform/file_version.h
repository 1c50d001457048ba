// file_version.h - the version a library file carries
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

/// The version block of a file: its version resource on Windows, the version suffix of the
/// resolved file name elsewhere (`libPxnC.so.2.1.0.7`: one to four numbers up to 65535, absent
/// ones are 0; any other suffix is no version).
class FileVersion {
public:
    FileVersion();
    ~FileVersion();
    FileVersion(FileVersion&& other) noexcept;
    FileVersion& operator=(FileVersion&& other) noexcept;

    /// Reads the block of `path`; false and empty when there is none.
    bool Read(const std::string& path);
    void Clear();
    bool HasBlock() const;
    /// One 16-bit part: 0 and 1 the high and low half of the most significant word, 2 and 3 of
    /// the least significant. 65535 without a block, without a root entry, or for another part.
    std::uint16_t Part(unsigned part) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
