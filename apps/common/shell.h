// shell.h - runs grabber operations line by line
#pragma once

#include "apps/common/shell_operation.h"

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

/// Runs operations line by line. Every line that is not empty produces one line of output, which is
/// flushed: "NAME = RESULT", or "NAME ? REASON" for an unknown name or a bad argument.
class Shell {
public:
    /// A strict shell ends with 1 after an operation that failed. With `printJson` each line of
    /// output is a JSON object; a refused line has "refusal" in place of "result" and "values".
    explicit Shell(const ShellOperations& knownOperations, bool isStrict = false,
                   bool printJson = false)
        : operations(knownOperations), strict(isStrict), isJson(printJson) {}

    /// The output for one line, without line end; empty for a blank line or a comment.
    std::string Answer(std::string_view line);
    /// Runs lines until `nextLine` returns false. Returns the program's exit status: 2 if a line
    /// was refused, 1 if the shell is strict and an operation failed, otherwise 0.
    int Run(const std::function<bool(std::string& line)>& nextLine, std::FILE* output);

private:
    const ShellOperations& operations;
    const bool strict;
    const bool isJson;
    bool refused = false;
    bool failed = false;
};
