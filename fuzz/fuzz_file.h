// fuzz_file.h - hands a fuzzer's bytes to code that opens files by name
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// A file in memory that can be opened by its path as long as the object lives.
class FuzzFile {
public:
    FuzzFile(const std::uint8_t* data, std::size_t size);
    ~FuzzFile();
    FuzzFile(const FuzzFile&) = delete;
    FuzzFile& operator=(const FuzzFile&) = delete;

    const std::string& Path() const { return path; }

private:
    int descriptor;
    std::string path;
};
