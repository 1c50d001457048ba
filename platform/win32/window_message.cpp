// window_message.cpp - the system's messages
#include "platform/window_message.h"

#include <windows.h>

#include <iterator>

namespace platform {

bool HasMessages() {
    return true;
}

bool PostWindowMessage(void* window, std::uint32_t message, std::uint64_t wParam,
                       std::int64_t lParam) {
    // The system would take no receiver, here and below, for the calling thread's queue.
    return window && PostMessageW(static_cast<HWND>(window), message, wParam, lParam);
}

bool PostToThread(std::uint32_t threadId, std::uint32_t message, std::uint64_t wParam,
                  std::int64_t lParam) {
    return threadId != 0 && PostThreadMessageW(threadId, message, wParam, lParam);
}

bool ShowMessageBox(void* parent, const char* text, const char* caption, bool warning) {
    const UINT style = MB_OK | (warning ? MB_ICONEXCLAMATION : 0u);
    return MessageBoxA(static_cast<HWND>(parent), text, caption, style) != 0;
}

bool IsTerminal(int descriptor) {
    constexpr DWORD kHandles[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    if (descriptor < 0 || descriptor >= static_cast<int>(std::size(kHandles))) {
        return false;
    }
    // Only a console has a mode; the C library's own test takes the null device for a terminal.
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(kHandles[descriptor]), &mode) != FALSE;
}

} // namespace platform
