// index_file.cpp - writes the index of a recording line by line
#include "apps/recording/index_file.h"

#include "apps/common/command_failure.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

IndexFile::~IndexFile() {
    if (file) {
        std::fclose(file);
    }
}

void IndexFile::ThrowFailure() const {
    throw CommandFailure("cannot write " + name + ": " + std::generic_category().message(errno));
}

void IndexFile::Create(const std::string& path) {
    name = path;
    file = std::fopen(path.c_str(), "wb");
    if (!file) {
        ThrowFailure();
    }
    // What the system has not taken is in no buffer, so that a failure concerns the last lines
    // only.
    std::setvbuf(file, nullptr, _IONBF, 0);
}

void IndexFile::Append(const std::string& lines) {
    errno = 0;
    if (std::fwrite(lines.data(), 1, lines.size(), file) == lines.size()) {
        size += lines.size();
        return;
    }
    const int reason = errno;
    std::error_code ignored;
    std::filesystem::resize_file(name, size, ignored);
    std::clearerr(file);
    std::fseek(file, 0, SEEK_END);
    errno = reason;
    ThrowFailure();
}

void IndexFile::Close() {
    errno = 0;
    if (file && std::fclose(std::exchange(file, nullptr)) != 0) {
        ThrowFailure();
    }
}
