// message_loop.h - letting windows live while a thread waits
#pragma once

#include <cstddef>

namespace platform {

/// Handles the window messages that wait for this thread. Each is offered to the dialogs first, so
/// that their keys work. Does nothing where there are no windows.
void ServeWindowMessages(void* const* dialogs, std::size_t count);

} // namespace platform
