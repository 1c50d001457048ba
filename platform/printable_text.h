// printable_text.h - texts that cannot control the terminal they are printed on
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The text with each of its control characters shown as the byte's number, ESC as "\x1B", so that
/// names from cameras and files can neither change the terminal nor begin a line. Control
/// characters are those of ASCII, with line ends, tabs and DEL, and U+0080 to U+009F in UTF-8. All
/// else stays, a backslash too.
std::string PrintableText(std::string_view text);
/// As PrintableText, but line feeds stay. For texts of several lines whose parts from elsewhere are
/// printable already.
std::string PrintableLines(std::string_view text);

} // namespace platform
