// interrupt.h - Ctrl-C and other requests to stop a command-line program
#pragma once

namespace platform {

/// Makes Ctrl-C (also SIGTERM, or Ctrl-Break on Windows) set a flag that InterruptRequested
/// returns, instead of ending the program. The Ctrl-C after `requests` of them ends the program as
/// usual, in case it does not respond. Blocking system calls, such as reading from a terminal,
/// return early. Clears the flag. False when the handler cannot be installed. Call from one thread
/// at a time.
bool InstallInterruptHandler(unsigned requests = 1);

/// True once the program has been asked to stop. Any thread.
bool InterruptRequested();
/// How many times it has been asked. Any thread.
unsigned InterruptCount();

} // namespace platform
