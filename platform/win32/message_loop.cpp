// message_loop.cpp - dispatching pending window messages
#include "platform/message_loop.h"

#include <windows.h>

#include <algorithm>

namespace platform {

void ServeWindowMessages(void* const* dialogs, std::size_t count) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        const bool isTaken = std::any_of(dialogs, dialogs + count, [&message](void* dialog) {
            return IsDialogMessageW(static_cast<HWND>(dialog), &message) != FALSE;
        });
        if (!isTaken) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

} // namespace platform
