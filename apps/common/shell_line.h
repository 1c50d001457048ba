// shell_line.h - parses a line of the shell
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A name and its arguments, separated by blanks. An argument that contains blanks is enclosed in
/// double quotes, within which two double quotes stand for one. A backslash is an ordinary
/// character, as paths require.
class ShellLine {
public:
    /// Parses a line; Error returns what is wrong with it.
    explicit ShellLine(std::string_view line);

    /// True for blank lines and those that begin with '#'.
    bool IsEmpty() const { return name.empty(); }
    const std::string& Name() const { return name; }
    const std::vector<std::string>& Arguments() const { return arguments; }
    /// Everything after the name as written, without surrounding blanks.
    const std::string& Rest() const { return rest; }
    /// Empty if the line is well formed.
    const std::string& Error() const { return error; }

private:
    void Split(std::string_view text);

    std::string name;
    std::string rest;
    std::vector<std::string> arguments;
    std::string error;
};
