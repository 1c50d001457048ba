// mapped_file.h - a file that is written through memory
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace platform {

/// A new file of fixed size, mapped into memory. What is written there is in the file at once for
/// other processes, and stays in it however this process ends; only a failure of the whole system
/// may lose it. One thread at a time.
class MappedFile {
public:
    MappedFile() = default;
    ~MappedFile() { Close(size); }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    /// Creates the file with `byteCount` zero bytes, at least 1, and maps it. The space is reserved
    /// on the disk. An existing regular file is replaced; on POSIX processes that have it open keep
    /// the old one, on Windows it must not be in use. On failure returns false and stores the
    /// system's message in `error` (unless null). Call once per object.
    bool Create(const std::string& path, std::size_t byteCount, std::string* error = nullptr);
    /// The file's content; null when nothing is mapped.
    std::byte* Data() const { return data; }
    std::size_t Size() const { return size; }
    /// Unmaps the file and shortens it to `byteCount` bytes, at most Size(). Does nothing when
    /// nothing is mapped.
    void Close(std::size_t byteCount) noexcept;

private:
    std::byte* data = nullptr;
    std::size_t size = 0;
    std::intptr_t file = -1; ///< descriptor or handle
};

} // namespace platform
