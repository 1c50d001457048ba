// man_page.cpp - the manual page of a program
#include "apps/pages/man_page.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace {

/// The text with what the formatter would take for its own made plain.
std::string Plain(const std::string& text) {
    std::string plain;
    for (const char c : text) {
        if (c == '\\') {
            plain += "\\e";
        } else if (c == '-') {
            plain += "\\-"; // a hyphen could not be copied into a command line
        } else {
            plain += c;
        }
    }
    const bool isRequest = plain.starts_with('.') || plain.starts_with('\'');
    return isRequest ? "\\&" + plain : plain;
}

std::string Bold(const std::string& text) {
    return "\\fB" + Plain(text) + "\\fR";
}

std::string Italic(const std::string& text) {
    return "\\fI" + Plain(text) + "\\fR";
}

std::string Joined(const std::vector<std::string>& words, const char* separator) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

std::string ValueText(const OptionDescription& option) {
    return option.choices.empty() ? option.value : Joined(option.choices, "|");
}

/// An option as the synopsis has it: with its long name.
std::string Usage(const OptionDescription& option) {
    std::string text;
    if (option.isPositional) {
        text = Italic(option.names.front()) + (option.mayRepeat ? "..." : "");
    } else {
        text = Bold(option.names.back());
        if (!option.value.empty()) {
            text += " " + Italic(ValueText(option));
        }
        text += option.mayRepeat ? "..." : "";
    }
    return option.isRequired ? text : "[" + text + "]";
}

/// Options first, then the arguments in their order.
std::string Synopsis(const CommandDescription& command, const std::string& path) {
    std::string text = Bold(path);
    for (const bool isPositional : {false, true}) {
        for (const OptionDescription& option : command.options) {
            if (option.isPositional == isPositional) {
                text += " " + Usage(option);
            }
        }
    }
    return text;
}

std::string OptionText(const OptionDescription& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.names) {
        names.push_back(option.isPositional ? Italic(name) : Bold(name));
    }
    std::string text = ".TP\n" + Joined(names, ", ");
    if (!option.isPositional && !option.value.empty()) {
        text += " " + Italic(ValueText(option));
    }
    text += "\n" + Plain(option.description);
    if (!option.limits.empty()) {
        text += " (" + Plain(option.limits) + ")";
    }
    if (!option.defaultText.empty()) {
        text += " (default: " + Plain(option.defaultText) + ")";
    }
    return text + ".\n";
}

/// Lines as they stand, an empty one between paragraphs.
std::string Lines(const std::string& text) {
    std::istringstream stream(text);
    std::string lines = ".PP\n.nf\n";
    for (std::string line; std::getline(stream, line);) {
        lines += Plain(line) + "\n";
    }
    return lines + ".fi\n";
}

std::string Options(const CommandDescription& command) {
    std::string text;
    for (const OptionDescription& option : command.options) {
        text += OptionText(option);
    }
    return text;
}

void AppendCommand(std::string& text, const CommandDescription& command, const std::string& above) {
    const std::string path = above + " " + command.name;
    text += ".SS " + Plain(path) + "\n" + Plain(command.description) + ".\n";
    if (!command.needsCommand) {
        text += ".PP\n" + Synopsis(command, path) + "\n";
    }
    text += Options(command);
    if (!command.footer.empty()) {
        text += Lines(command.footer);
    }
    for (const CommandDescription& inner : command.commands) {
        AppendCommand(text, inner, path);
    }
}

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

} // namespace

std::string ManPage(const CommandDescription& program, const std::string& version) {
    std::string text = ".TH " + Plain(Upper(program.name)) + " 1 \"\" \"" + Plain(version) +
                       "\" \"User commands\"\n";
    text += ".SH NAME\n" + Plain(program.name) + " \\- " + Plain(program.description) + "\n";
    text += ".SH SYNOPSIS\n" + Bold(program.name) + " [" + Italic("OPTION") + "]... " +
            Italic("COMMAND") + " [" + Italic("ARGUMENT") + "]...\n";
    text += ".SH DESCRIPTION\n" + Plain(program.description) + ".\n" + Lines(program.footer);
    text += ".SH OPTIONS\nThe options may stand before and after the command.\n" + Options(program);
    text += ".SH COMMANDS\n";
    for (const CommandDescription& command : program.commands) {
        AppendCommand(text, command, program.name);
    }
    return text;
}
