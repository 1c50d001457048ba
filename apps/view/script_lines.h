// script_lines.h - the lines of a script for a camera SDK's control interface
#pragma once

#include <string>
#include <vector>

/// The commands of a text, one a line, without blanks around them; empty lines and lines from '#'
/// are left out. Lines end with \n or \r\n.
std::vector<std::string> ScriptLines(const std::string& text);
