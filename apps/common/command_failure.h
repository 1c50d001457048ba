// command_failure.h - exception and message for a failed operation
#pragma once

#include "mivora/types.h"

#include <stdexcept>
#include <string>
#include <vector>

/// Ends the program with exit status 1. The text names the operation, the object, the code and its
/// meaning; each detail follows on a line of its own. Their control characters are made printable.
class CommandFailure : public std::runtime_error {
public:
    explicit CommandFailure(const std::string& text, const std::vector<std::string>& details = {});

    /// The same failure with one more detail.
    CommandFailure With(const std::string& detail) const;

    /// The texts as they were given.
    const std::string& Message() const { return message; }
    const std::vector<std::string>& Details() const { return details; }

private:
    std::string message;
    std::vector<std::string> details;
};

/// A recording was made and frames are missing from it: ends the program with exit status 3.
class FramesMissing : public CommandFailure {
public:
    using CommandFailure::CommandFailure;
};

/// "OpenActCamera failed with 4 (the SDK refused ...) for camera 1".
std::string FailureText(const std::string& operation, MV_ERRCODE code,
                        const std::string& object = {});
/// Throws a CommandFailure with that text unless the code is MV_OK.
void Check(const std::string& operation, MV_ERRCODE code, const std::string& object = {});
