// mapped_file.cpp - mapped files on Windows
#include "platform/mapped_file.h"

#include "platform/win32/last_error.h"

#include <windows.h>

#include <utility>

namespace platform {

bool MappedFile::Create(const std::string& path, std::size_t byteCount, std::string* error) {
    const auto fail = [error](DWORD failure) {
        if (error) {
            *error = SystemErrorText(failure);
        }
        return false;
    };
    const HANDLE handle = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                      nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return fail(GetLastError());
    }
    const std::uint64_t wide = byteCount;
    const HANDLE mapping =
        CreateFileMappingA(handle, nullptr, PAGE_READWRITE, static_cast<DWORD>(wide >> 32),
                           static_cast<DWORD>(wide), nullptr);
    void* const mapped =
        mapping ? MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, byteCount) : nullptr;
    const DWORD failure = GetLastError();
    if (mapping) {
        CloseHandle(mapping); // the view keeps it
    }
    if (!mapped) {
        CloseHandle(handle);
        DeleteFileA(path.c_str());
        return fail(failure);
    }
    data = static_cast<std::byte*>(mapped);
    size = byteCount;
    file = reinterpret_cast<std::intptr_t>(handle);
    return true;
}

void MappedFile::Close(std::size_t byteCount) noexcept {
    if (!data) {
        return;
    }
    UnmapViewOfFile(std::exchange(data, nullptr));
    size = 0;
    const HANDLE handle = reinterpret_cast<HANDLE>(std::exchange(file, -1));
    LARGE_INTEGER end;
    end.QuadPart = static_cast<LONGLONG>(byteCount);
    // A file that stays longer is read all the same.
    if (SetFilePointerEx(handle, end, nullptr, FILE_BEGIN)) {
        SetEndOfFile(handle);
    }
    CloseHandle(handle);
}

} // namespace platform
