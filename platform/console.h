// console.h - the standard streams of a command-line program
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

/// Switches the standard streams to binary mode and the console to UTF-8; POSIX needs neither. Call
/// once, before any input or output.
void PrepareStandardStreams();

/// Makes writing to a pipe whose reader has gone fail, in place of ending the program; on Windows
/// it does so anyway.
void ReportBrokenPipes();

/// Waits up to `timeoutMs` milliseconds for input or the end of standard input. True when ReadInput
/// can be called; false on timeout and, on POSIX, when a signal interrupts the wait. On a Windows
/// console any console event ends the wait. Only one thread may call this function and ReadInput,
/// and nothing else may read standard input.
bool WaitForInput(std::uint32_t timeoutMs);
/// Reads up to `capacity` bytes from standard input, blocking until at least one is available.
/// Returns their number; 0 at the end of the input, on errors and, on POSIX, when a signal
/// interrupts the call.
std::size_t ReadInput(char* buffer, std::size_t capacity);

/// True when standard stream number `descriptor` (0 input, 1 output, 2 error) is a terminal or
/// console; false for a file, a pipe, the null device and invalid numbers. Any thread.
bool IsTerminal(int descriptor);

/// True when colours may be written to a standard stream: it is a terminal that knows the sequences
/// for them, and the environment variable NO_COLOR is not set or empty.
bool ShowsColour(int descriptor);

} // namespace platform
