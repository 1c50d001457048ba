// script.h - runs lines of the control interface from a text or a file
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace pxsim {

/// Runs the lines of a script in order, except blank lines and those that begin with '#'. Returns
/// 0, or the code of the first line that is refused; the answer is then "NAME:LINE: reason", with
/// lines counted from `firstLine`. A refusal ends the script; the effects of earlier lines remain.
std::int32_t RunScript(const std::string& text, const std::string& name, std::size_t firstLine,
                       std::string& answer);
/// The same for a file; PxnErrNotFound when it cannot be read. Before the startup, lines that need
/// a started SDK wait for it.
std::int32_t RunScriptFile(const std::string& path, std::string& answer);

/// Runs the lines that wait, in the order in which they came, once the SDK is started. Results as
/// those of RunScript; after a refusal no line waits any longer.
std::int32_t RunWaitingLines(std::string& answer);
/// Discards the lines that wait.
void ForgetWaitingLines();

} // namespace pxsim
