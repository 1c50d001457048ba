// process_resources_posix.cpp - what a process holds of the system, from /proc
#include "process_resources.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

std::uint64_t CountEntries(const char* directory) {
    const std::filesystem::directory_iterator entries(directory);
    return static_cast<std::uint64_t>(std::distance(begin(entries), end(entries)));
}

} // namespace

ProcessResources ProcessResources::Now() {
    std::uint64_t pages = 0;
    std::uint64_t residentPages = 0;
    std::ifstream("/proc/self/statm") >> pages >> residentPages;
    ProcessResources now;
    now.bytes = residentPages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    now.handles = CountEntries("/proc/self/fd");
    now.threads = CountEntries("/proc/self/task");
    return now;
}
