// shell_session.h - a running shell, driven line by line
#pragma once

#include "platform/process.h"
#include "tests/support/run_program.h"

#include <string>

namespace scenario {

/// A running shell of a program, for tests that change the environment between its lines.
class ShellSession {
public:
    /// Starts the program; its command must be the shell.
    explicit ShellSession(platform::ProcessStart start);

    /// Sends a line, waits for its result and returns it without its line end; empty if none
    /// arrives within a minute.
    std::string Ask(const std::string& line);
    /// Ends the input and waits until the program ends.
    support::ProgramResult End();

private:
    platform::Process process;
    std::size_t read = 0;
};

} // namespace scenario
