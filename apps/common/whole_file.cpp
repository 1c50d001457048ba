// whole_file.cpp - reads and writes files in one piece
#include "apps/common/whole_file.h"

#include "apps/common/command_failure.h"
#include "platform/file_system.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

std::string ReadWholeFile(const std::string& path) {
    std::string content;
    std::string error;
    if (!platform::ReadWholeFile(path, content, &error)) {
        throw CommandFailure("cannot read " + path + ": " + error);
    }
    return content;
}

void WriteWholeFile(const std::string& path, const std::string& content) {
    errno = 0;
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    const bool isWritten =
        file && std::fwrite(content.data(), 1, content.size(), file) == content.size();
    // Closing flushes the file and may fail.
    const bool isClosed = file && std::fclose(file) == 0;
    if (!isWritten || !isClosed) {
        throw CommandFailure("cannot write " + path + ": " +
                             std::generic_category().message(errno));
    }
}
