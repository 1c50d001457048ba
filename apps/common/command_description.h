// command_description.h - what is known about the commands of a program
#pragma once

#include <string>
#include <vector>

/// An option, flag or positional argument.
struct OptionDescription {
    std::vector<std::string> names;   ///< "-o" and "--output"; one without dashes for an argument
    std::string value;                ///< placeholder of the value; empty for a flag
    std::vector<std::string> choices; ///< the only values; empty: others
    std::string limits;               ///< "2 to 5", or empty
    std::string defaultText;          ///< empty: none is shown
    std::string description;
    bool isPositional = false;
    bool isRequired = false;
    bool isValueOptional = false;
    bool mayRepeat = false;
};

/// A command; also the program itself.
struct CommandDescription {
    std::string name;
    std::string description;
    std::string footer; ///< lines, with line ends
    bool needsCommand = false;
    std::vector<OptionDescription> options; ///< in the order of the help text, without --help
    std::vector<CommandDescription> commands;
};
