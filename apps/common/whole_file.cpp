// whole_file.cpp - reads and writes files in one piece
#include "apps/common/whole_file.h"

#include "apps/common/command_failure.h"
#include "platform/file_system.h"
#include "platform/output_file.h"

#include <cerrno>
#include <cstdio>
#include <initializer_list>
#include <system_error>

namespace {

void WriteDirectly(const std::string& path,
                   std::initializer_list<platform::OutputFile::Piece> pieces) {
    errno = 0;
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    bool isWritten = file != nullptr;
    for (const platform::OutputFile::Piece& piece : pieces) {
        isWritten = isWritten && std::fwrite(piece.data, 1, piece.size, file) == piece.size;
    }
    // Closing flushes the file and may fail.
    const bool isClosed = file && std::fclose(file) == 0;
    if (!isWritten || !isClosed) {
        throw CommandFailure("cannot write " + path + ": " +
                             std::generic_category().message(errno));
    }
}

} // namespace

std::string ReadWholeFile(const std::string& path) {
    std::string content;
    std::string error;
    if (!platform::ReadWholeFile(path, content, &error)) {
        throw CommandFailure("cannot read " + path + ": " + error);
    }
    return content;
}

void WriteWholeFile(const std::string& path, const std::string& content) {
    WriteDirectly(path, {{content.data(), content.size()}});
}

void WriteEncodedFrame(const std::string& path, const EncodedFrame& frame) {
    const std::initializer_list<platform::OutputFile::Piece> pieces = {
        {frame.head.data(), frame.head.size()},
        {frame.pixels, frame.pixelBytes},
        {frame.tail.data(), frame.tail.size()}};
    if (platform::PathExists(path) && !platform::IsRegularFile(path) &&
        !platform::IsDirectory(path)) {
        WriteDirectly(path, pieces);
        return;
    }
    platform::OutputFile file;
    std::string error;
    if (!file.Create(path, &error) || !file.Append(pieces, &error) || !file.Finish(false, &error)) {
        throw CommandFailure("cannot write " + path + ": " + error);
    }
}
