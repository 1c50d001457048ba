// console.cpp - the standard streams on POSIX
#include "platform/console.h"

#include "platform/environment.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace platform {

void PrepareStandardStreams() {
    // POSIX streams have no text mode.
}

void ReportBrokenPipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

bool WaitForInput(std::uint32_t timeoutMs) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, static_cast<int>(timeoutMs)) > 0;
}

std::size_t ReadInput(char* buffer, std::size_t capacity) {
    const ssize_t count = read(STDIN_FILENO, buffer, capacity);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool IsTerminal(int descriptor) {
    return isatty(descriptor) == 1;
}

bool ShowsColour(int descriptor) {
    const std::string terminal = GetEnvironment("TERM");
    return IsTerminal(descriptor) && GetEnvironment("NO_COLOR").empty() && !terminal.empty() &&
           terminal != "dumb";
}

} // namespace platform
