// memory_limit.h - a process that runs out of memory
#pragma once

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <fstream>
#include <string>

/// Lets this process have little more memory than it has, for a scope.
class MemoryLimit {
public:
    explicit MemoryLimit(rlim_t moreMegabytes = 256) {
        getrlimit(RLIMIT_DATA, &former);
        std::ifstream status("/proc/self/status");
        std::string word;
        rlim_t kilobytes = 0;
        while (status >> word) {
            if (word == "VmData:") {
                status >> kilobytes;
            }
        }
        rlimit lower = former;
        lower.rlim_cur = (kilobytes + moreMegabytes * 1024) * 1024;
        EXPECT_GT(kilobytes, 0u);
        EXPECT_EQ(setrlimit(RLIMIT_DATA, &lower), 0);
    }
    ~MemoryLimit() { EXPECT_EQ(setrlimit(RLIMIT_DATA, &former), 0); }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

private:
    rlimit former{};
};
