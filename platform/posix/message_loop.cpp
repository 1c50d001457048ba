// message_loop.cpp - a platform without windows
#include "platform/message_loop.h"

namespace platform {

void ServeWindowMessages(void* const*, std::size_t) {}

} // namespace platform
