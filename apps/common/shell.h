// shell.h - the grabber's operations, one a line
#pragma once

#include "apps/common/shell_operation.h"

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

/// Runs operations line by line. Every line that is not empty gives one line of output, flushed:
/// "NAME = ANSWER", or "NAME ? REASON" for an unknown name or a bad argument.
class Shell {
public:
    explicit Shell(const ShellOperations& knownOperations) : operations(knownOperations) {}

    /// What one line gives, without line end; empty for a blank line or a comment.
    std::string Answer(std::string_view line);
    /// Runs lines until `nextLine` has none left. Returns the program's exit status: 2 when a line
    /// was refused, else 0.
    int Run(const std::function<bool(std::string& line)>& nextLine, std::FILE* output);

private:
    const ShellOperations& operations;
    bool refused = false;
};
