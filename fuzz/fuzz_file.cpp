// fuzz_file.cpp - passing fuzzer input to code that opens files by name
#include "fuzz/fuzz_file.h"

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

FuzzFile::FuzzFile(const std::uint8_t* data, std::size_t size)
    : descriptor(memfd_create("fuzz", 0)), path("/proc/self/fd/" + std::to_string(descriptor)) {
    if (descriptor < 0 || write(descriptor, data, size) != static_cast<ssize_t>(size)) {
        std::abort();
    }
}

FuzzFile::~FuzzFile() {
    close(descriptor);
}
