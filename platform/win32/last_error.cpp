// last_error.cpp - messages for system error codes
#include "platform/win32/last_error.h"

#include <windows.h>

namespace platform {

std::string SystemErrorText(std::uint32_t code) {
    char text[512];
    DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                  nullptr, code, 0, text, sizeof text, nullptr);
    while (length > 0 &&
           (text[length - 1] == '\n' || text[length - 1] == '\r' || text[length - 1] == ' ')) {
        --length;
    }
    return length > 0 ? std::string(text, length) : "system error " + std::to_string(code);
}

} // namespace platform
