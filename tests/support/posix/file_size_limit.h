// file_size_limit.h - files that cannot grow, as on a full disk
#pragma once

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>

namespace support {

/// While it exists, no file of this process can grow beyond `limit` bytes.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit) : formerHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &former);
        const rlimit lowered{limit, former.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &lowered), 0);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &former);
        std::signal(SIGXFSZ, formerHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit former{};
    void (*formerHandler)(int);
};

} // namespace support
