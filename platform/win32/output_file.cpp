// output_file.cpp - a file that gets its name when it is whole, on Windows
#include "platform/output_file.h"

#include "platform/clock.h"
#include "platform/sleep.h"
#include "platform/win32/last_error.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <utility>

namespace platform {

namespace {

constexpr std::intptr_t kNoFile = -1; // INVALID_HANDLE_VALUE
constexpr std::uint64_t kOpenElsewhereLimitNs = 500'000'000;

HANDLE AsHandle(std::intptr_t file) {
    return reinterpret_cast<HANDLE>(file);
}

// Creates a file with a unique name in the directory of `path`; INVALID_HANDLE_VALUE with the last
// error set on failure.
HANDLE CreateFileBeside(const std::string& path, std::string& name) {
    static std::atomic<unsigned> nextNumber{0};
    HANDLE handle = INVALID_HANDLE_VALUE;
    do {
        name = path + "." + std::to_string(GetCurrentProcessId()) + "." +
               std::to_string(nextNumber++) + ".tmp";
        handle = CreateFileA(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    } while (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS);
    return handle;
}

// Windows refuses to replace a file while anybody has it open, be it for reading. Readers of small
// files are quick. Returns false with the last error set on failure.
bool RenameOver(const std::string& temporary, const std::string& path, bool isDurable) {
    const std::uint64_t start = MonotonicNanoseconds();
    const DWORD flags = MOVEFILE_REPLACE_EXISTING | (isDurable ? MOVEFILE_WRITE_THROUGH : 0);
    while (!MoveFileExA(temporary.c_str(), path.c_str(), flags)) {
        const DWORD reason = GetLastError();
        const bool mayBeOpen = reason == ERROR_ACCESS_DENIED || reason == ERROR_SHARING_VIOLATION;
        if (!mayBeOpen || MonotonicNanoseconds() - start >= kOpenElsewhereLimitNs) {
            SetLastError(reason);
            return false;
        }
        SleepMs(1);
    }
    return true;
}

bool Report(bool isDone, std::string* error) {
    if (!isDone && error) {
        *error = SystemErrorText(GetLastError());
    }
    return isDone;
}

} // namespace

bool OutputFile::IsOpen() const {
    return file != kNoFile;
}

bool OutputFile::Create(const std::string& path, std::string* error) {
    return Report(CreateBeside(path), error);
}

bool OutputFile::CreateBeside(const std::string& path) {
    if (path.find('\0') != std::string::npos) {
        SetLastError(ERROR_INVALID_NAME); // the system would take what is before it for the name
        return false;
    }
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    finalPath = path;
    file = reinterpret_cast<std::intptr_t>(CreateFileBeside(path, temporary));
    size = 0;
    isTooLong = false;
    return IsOpen();
}

bool OutputFile::Append(std::initializer_list<Piece> pieces, std::string* error) {
    std::uint64_t end = size;
    for (const Piece& piece : pieces) {
        if (!WriteAt(end, piece)) {
            const DWORD reason = GetLastError();
            isTooLong = true;
            CutBack(); // tried again before the file gets its name
            SetLastError(reason);
            return Report(false, error);
        }
        end += piece.size;
    }
    size = end;
    return true;
}

bool OutputFile::Overwrite(std::uint64_t offset, Piece piece, std::string* error) {
    return Report(WriteAt(offset, piece), error);
}

bool OutputFile::WriteAt(std::uint64_t offset, Piece piece) {
    constexpr std::size_t kMost = 1u << 30;
    const auto* const data = static_cast<const char*>(piece.data);
    std::size_t done = 0;
    while (done < piece.size) {
        const std::uint64_t at = offset + done;
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(at & 0xFFFFFFFF);
        place.OffsetHigh = static_cast<DWORD>(at >> 32);
        DWORD written = 0;
        if (!WriteFile(AsHandle(file), data + done,
                       static_cast<DWORD>(std::min(piece.size - done, kMost)), &written, &place)) {
            return false;
        }
        done += written;
    }
    return true;
}

bool OutputFile::CutBack() {
    FILE_END_OF_FILE_INFO end{};
    end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
    if (isTooLong &&
        SetFileInformationByHandle(AsHandle(file), FileEndOfFileInfo, &end, sizeof end)) {
        isTooLong = false;
    }
    return !isTooLong;
}

bool OutputFile::Finish(bool isDurable, std::string* error) {
    const bool isDone = CloseAndRename(isDurable);
    if (!isDone) {
        const DWORD reason = GetLastError();
        Discard();
        if (!temporary.empty()) {
            DeleteFileA(temporary.c_str()); // closed, but not renamed
        }
        SetLastError(reason);
    }
    temporary.clear();
    return Report(isDone, error);
}

bool OutputFile::CloseAndRename(bool isDurable) {
    return CutBack() && (!isDurable || FlushFileBuffers(AsHandle(file))) &&
           CloseHandle(AsHandle(std::exchange(file, kNoFile))) &&
           RenameOver(temporary, finalPath, isDurable);
}

void OutputFile::Discard() noexcept {
    if (IsOpen()) {
        CloseHandle(AsHandle(std::exchange(file, kNoFile)));
        DeleteFileA(temporary.c_str());
        temporary.clear();
    }
}

} // namespace platform
