// shell_line.h - one line of the shell, taken apart
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A name and its arguments. Arguments are separated by blanks; one that holds blanks stands in
/// double quotes, inside which two double quotes in a row are one. A backslash is a character like
/// any other, as paths need it.
class ShellLine {
public:
    /// Takes a line apart. What is wrong with it is told by Error.
    explicit ShellLine(std::string_view line);

    /// True for blank lines and those that begin with '#'.
    bool IsEmpty() const { return name.empty(); }
    const std::string& Name() const { return name; }
    const std::vector<std::string>& Arguments() const { return arguments; }
    /// All behind the name as it stands, without the blanks around it.
    const std::string& Rest() const { return rest; }
    /// Empty when the line is well formed.
    const std::string& Error() const { return error; }

private:
    void Split(std::string_view text);

    std::string name;
    std::string rest;
    std::vector<std::string> arguments;
    std::string error;
};
