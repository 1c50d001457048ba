// shell_session.h - a shell that is talked to line by line
#pragma once

#include "platform/process.h"
#include "tests/support/run_program.h"

#include <string>

namespace scenario {

/// A program's shell as it runs, for tests that change the world between its lines.
class ShellSession {
public:
    /// Starts the program; its command must be the shell.
    explicit ShellSession(platform::ProcessStart start);

    /// Sends one line and waits for its answer, which is returned without its end; empty when none
    /// comes within a minute.
    std::string Ask(const std::string& line);
    /// Ends the input and waits for the program's end.
    support::ProgramResult End();

private:
    platform::Process process;
    std::size_t read = 0;
};

} // namespace scenario
