// window_message.h - posting messages to windows and threads, and message boxes
//
// All functions may be called from any thread.
#pragma once

#include <cstdint>

namespace platform {

/// True on platforms with window and thread messages (Windows).
bool HasMessages();
/// Posts a message to a window. False when `window` is null, when the system reports an error, and
/// on platforms without messages.
bool PostWindowMessage(void* window, std::uint32_t message, std::uint64_t wParam,
                       std::int64_t lParam);
/// Posts a message to a thread's queue. False when `threadId` is 0, when the system reports an
/// error, and on platforms without messages.
bool PostToThread(std::uint32_t threadId, std::uint32_t message, std::uint64_t wParam,
                  std::int64_t lParam);
/// Shows a modal message box with an OK button and, with `warning`, an exclamation icon; returns
/// after the user has closed it. `parent` may be null. False when it cannot be shown.
bool ShowMessageBox(void* parent, const char* text, const char* caption, bool warning);

} // namespace platform
