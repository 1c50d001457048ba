// window_message.cpp - a platform without windows
#include "platform/window_message.h"

#include <unistd.h>

namespace platform {

bool HasMessages() {
    return false;
}

bool PostWindowMessage(void*, std::uint32_t, std::uint64_t, std::int64_t) {
    return false;
}

bool PostToThread(std::uint32_t, std::uint32_t, std::uint64_t, std::int64_t) {
    return false;
}

bool ShowMessageBox(void*, const char*, const char*, bool) {
    return false;
}

bool IsTerminal(int descriptor) {
    return isatty(descriptor) == 1;
}

} // namespace platform
