// commands.h - the lines of the control interface
#pragma once

#include <cstdint>
#include <string>

namespace pxsim {

/// Runs one line. Returns 0 and an answer, or a negative code and the reason.
std::int32_t RunCommand(const std::string& line, std::string& answer);
/// The same without an answer: a refusal is written to standard error.
void RunUnattended(const std::string& line);

} // namespace pxsim
