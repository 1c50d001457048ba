// script.h - several commands of the control interface, one a line
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace pxsim {

/// Runs the lines of a script in order; blank lines and lines from '#' are skipped. 0, or the code
/// of the first line that is refused, which ends the script: the answer is "NAME:LINE: reason",
/// with lines counted from `firstLine`. What ran before stays done.
std::int32_t RunScript(const std::string& text, const std::string& name, std::size_t firstLine,
                       std::string& answer);
/// The same with a file; -3 when it cannot be read.
std::int32_t RunScriptFile(const std::string& path, std::string& answer);

} // namespace pxsim
