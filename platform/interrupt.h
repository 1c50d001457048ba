// interrupt.h - the user's wish that a command-line program stop
#pragma once

namespace platform {

/// From now on Ctrl-C (and SIGTERM, or Ctrl-Break on Windows) is only noted, for
/// InterruptRequested to tell. Forgets an earlier request. A second Ctrl-C ends the program the
/// system's way, so that a program which fails to stop can still be ended. Waiting system calls,
/// such as reading from a terminal, return early. False when the system refused.
bool InstallInterruptHandler();

/// True once the user has asked the program to stop. Any thread.
bool InterruptRequested();

} // namespace platform
