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
/// True when the two standard streams are a terminal that a person looks at.
bool IsTerminal(int descriptor);

} // namespace platform
