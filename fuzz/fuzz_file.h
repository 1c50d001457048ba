// fuzz_file.h - passing fuzzer input to code that opens files by name
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// A file in memory, which can be opened by its path while the object exists. Ends the program when
/// it cannot be created.
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
