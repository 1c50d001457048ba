// window_message.cpp - window and thread messages, message boxes
#include "platform/window_message.h"

#include <windows.h>

namespace platform {

bool HasMessages() {
    return true;
}

bool PostWindowMessage(void* window, std::uint32_t message, std::uint64_t wParam,
                       std::int64_t lParam) {
    // PostMessage would post to the calling thread's own queue.
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

} // namespace platform
