// console.h - the standard streams of a command-line program
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

/// Makes the standard streams carry bytes as they are, and a console show UTF-8. To be called once,
/// before anything is read or written.
void PrepareStandardStreams();

/// Waits at most `timeoutMs` milliseconds until standard input can be read without waiting:
/// something has come, or it has ended. For one thread, which does not use stdin otherwise.
bool WaitForInput(std::uint32_t timeoutMs);
/// Reads what has come, waiting for the first byte; 0 at the end of standard input.
std::size_t ReadInput(char* buffer, std::size_t capacity);

} // namespace platform
