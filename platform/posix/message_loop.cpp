// message_loop.cpp - POSIX has no window messages
#include "platform/message_loop.h"

namespace platform {

void ServeWindowMessages(void* const*, std::size_t) {}

} // namespace platform
