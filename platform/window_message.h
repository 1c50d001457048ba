// window_message.h - the system's messages to windows and threads
#pragma once

#include <cstdint>

namespace platform {

/// True where windows and thread messages exist.
bool HasMessages();
/// Posts a message to a window; false where there are none or the system refused.
bool PostWindowMessage(void* window, std::uint32_t message, std::uint64_t wParam,
                       std::int64_t lParam);
/// Posts a message to a thread's queue; false where there are none or the system refused.
bool PostToThread(std::uint32_t threadId, std::uint32_t message, std::uint64_t wParam,
                  std::int64_t lParam);
/// Shows a modal message box with an OK button; `warning` adds the exclamation icon. False
/// where there are no windows.
bool ShowMessageBox(void* parent, const char* text, const char* caption, bool warning);
/// True when the standard stream of that number (0 input, 1 output, 2 error) is a terminal or a
/// console, false for a file, a pipe or the null device.
bool IsTerminal(int descriptor);

} // namespace platform
