// command_failure.h - an operation failed, and the program ends with status 1
#pragma once

#include "mivora/types.h"

#include <stdexcept>
#include <string>

/// Ends a command; the text says operation, object, code and meaning.
class CommandFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// "OpenActCamera failed with 4 (the SDK refused ...) for camera 1".
std::string FailureText(const std::string& operation, MV_ERRCODE code,
                        const std::string& object = {});
/// Throws a CommandFailure of that text unless the code is MV_OK.
void Check(const std::string& operation, MV_ERRCODE code, const std::string& object = {});
