// console.cpp - the standard streams on Windows
#include "platform/console.h"

#include "platform/environment.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <stdio.h>

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

constexpr std::uint32_t kPollIntervalMs = 10;

/// Pipes cannot be waited for, only polled. PeekNamedPipe fails when the other end has been closed.
bool IsPipeReadable(HANDLE pipe) {
    DWORD available = 0;
    return !PeekNamedPipe(pipe, nullptr, 0, nullptr, &available, nullptr) || available > 0;
}

} // namespace

void PrepareStandardStreams() {
    for (FILE* stream : {stdin, stdout, stderr}) {
        _setmode(_fileno(stream), _O_BINARY);
    }
    SetConsoleCP(CP_UTF8);
    SetConsoleOutputCP(CP_UTF8);
}

void ReportBrokenPipes() {
    // Windows has no signal for them.
}

bool WaitForInput(std::uint32_t timeoutMs) {
    HANDLE const input = GetStdHandle(STD_INPUT_HANDLE);
    if (GetFileType(input) == FILE_TYPE_CHAR) {
        return WaitForSingleObject(input, timeoutMs) != WAIT_TIMEOUT;
    }
    if (GetFileType(input) != FILE_TYPE_PIPE) {
        return true;
    }
    for (std::uint32_t waited = 0;; waited += kPollIntervalMs) {
        if (IsPipeReadable(input)) {
            return true;
        }
        if (waited >= timeoutMs) {
            return false;
        }
        Sleep(std::min(kPollIntervalMs, timeoutMs - waited));
    }
}

std::size_t ReadInput(char* buffer, std::size_t capacity) {
    DWORD count = 0;
    const auto size = static_cast<DWORD>(std::min<std::size_t>(capacity, 1u << 20));
    return ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, size, &count, nullptr) ? count : 0;
}

bool IsTerminal(int descriptor) {
    constexpr DWORD kHandles[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    if (descriptor < 0 || descriptor >= static_cast<int>(std::size(kHandles))) {
        return false;
    }
    // Only a console has a console mode; _isatty would accept the null device, too.
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(kHandles[descriptor]), &mode) != FALSE;
}

bool ShowsColour(int descriptor) {
    if (!IsTerminal(descriptor) || !GetEnvironment("NO_COLOR").empty()) {
        return false;
    }
    // Consoles before Windows 10 refuse the mode.
    HANDLE const console = GetStdHandle(descriptor == 1 ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != FALSE &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
}

} // namespace platform
