// output_file.h - a file that gets its name when it is whole
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace platform {

/// A file that is written under a temporary name, in the directory of its final one, and renamed
/// when it is whole: under the final name others see what was there before or all of it. An object
/// that is destroyed before that removes the file. One thread at a time. All functions that fail
/// return false and store the system's message in `error` (unless null).
class OutputFile {
public:
    struct Piece {
        const void* data;
        std::size_t size;
    };

    OutputFile() = default;
    ~OutputFile() { Discard(); }
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Creates the file as `path`.NUMBERS.tmp. Fails when `path` names something that is not a
    /// regular file, or a file that is read-only, even for root or an administrator. On POSIX the
    /// new file gets the permissions of the one that it will replace, and when `path` is a symbolic
    /// link, its target is replaced. Call when no file is open.
    bool Create(const std::string& path, std::string* error = nullptr);
    bool IsOpen() const;
    /// Bytes appended so far.
    std::uint64_t Size() const { return size; }
    /// Appends all pieces, or nothing: on failure the file is cut back.
    bool Append(std::initializer_list<Piece> pieces, std::string* error = nullptr);
    /// Overwrites bytes that have been appended.
    bool Overwrite(std::uint64_t offset, Piece piece, std::string* error = nullptr);
    /// Closes the file and gives it its name, with `isDurable` after what is in it and its name
    /// have been written to the disk. On failure the file is removed.
    bool Finish(bool isDurable, std::string* error = nullptr);
    /// Closes and removes the file, when one is open.
    void Discard() noexcept;

private:
    // On failure these leave the reason to the system's last error.
    bool CreateBeside(const std::string& path);
    bool WriteAt(std::uint64_t offset, Piece piece);
    bool CutBack();
    bool CloseAndRename(bool isDurable);

    std::intptr_t file = -1; ///< descriptor or handle
    std::uint64_t size = 0;
    bool isTooLong = false; ///< bytes of a failed Append may be left behind the end
    std::string finalPath;
    std::string temporary;
};

} // namespace platform
