// command_failure.h - exception and message for a failed operation
#pragma once

#include "mivora/types.h"

#include <stdexcept>
#include <string>

/// Ends the program with exit status 1. The text names the operation, the object, the code and its
/// meaning.
class CommandFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// "OpenActCamera failed with 4 (the SDK refused ...) for camera 1".
std::string FailureText(const std::string& operation, MV_ERRCODE code,
                        const std::string& object = {});
/// Throws a CommandFailure with that text unless the code is MV_OK.
void Check(const std::string& operation, MV_ERRCODE code, const std::string& object = {});
