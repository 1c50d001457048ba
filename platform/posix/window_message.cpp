// window_message.cpp - POSIX has no window messages
#include "platform/window_message.h"

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

} // namespace platform
