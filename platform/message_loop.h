// message_loop.h - window messages in programs that have no message loop of their own
#pragma once

#include <cstddef>

namespace platform {

/// Dispatches the pending window messages of the calling thread and returns. Each message is first
/// offered to the `count` window handles in `dialogs`, so that their keyboard navigation works.
/// Does nothing on platforms without windows.
void ServeWindowMessages(void* const* dialogs, std::size_t count);

} // namespace platform
