// script_lines.h - splits a script for the SDK's control interface into commands
#pragma once

#include <string>
#include <vector>

/// The commands of a text, one per line, without surrounding blanks; skips empty lines and lines
/// that begin with '#'. Lines end with \n or \r\n.
std::vector<std::string> ScriptLines(const std::string& text);
