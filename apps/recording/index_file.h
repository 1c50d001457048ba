// index_file.h - writes the index of a recording line by line
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

/// A text file that grows by whole lines, each of which has reached the system when Append returns:
/// of a program that is killed it holds all lines so far. One thread at a time.
class IndexFile {
public:
    IndexFile() = default;
    ~IndexFile();
    IndexFile(const IndexFile&) = delete;
    IndexFile& operator=(const IndexFile&) = delete;

    /// Creates the file, or empties it. Throws CommandFailure.
    void Create(const std::string& path);
    /// Appends whole lines, or none when it throws CommandFailure with the system's reason.
    void Append(const std::string& lines);
    /// Throws CommandFailure when the file could not be closed.
    void Close();

private:
    [[noreturn]] void ThrowFailure() const;

    std::string name;
    std::FILE* file = nullptr;
    std::uint64_t size = 0; // of the whole lines
};
