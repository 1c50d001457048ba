// whole_file.cpp - reads and writes files in one piece
#include "apps/common/whole_file.h"

#include "apps/common/command_failure.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace {

constexpr std::size_t kPiece = 1u << 16;

[[noreturn]] void FailOn(const std::string& what, const std::string& path) {
    throw CommandFailure("cannot " + what + " " + path + ": " +
                         std::generic_category().message(errno));
}

} // namespace

std::string ReadWholeFile(const std::string& path) {
    errno = 0;
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (!file) {
        FailOn("read", path);
    }
    std::string content;
    std::array<char, kPiece> piece;
    for (std::size_t count = 1; count != 0;) {
        count = std::fread(piece.data(), 1, piece.size(), file);
        content.append(piece.data(), count);
    }
    const bool isRead = std::ferror(file) == 0;
    const int reason = errno;
    std::fclose(file);
    if (!isRead) {
        errno = reason;
        FailOn("read", path);
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
        FailOn("write", path);
    }
}
