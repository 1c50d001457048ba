// shell_line.cpp - parses a line of the shell
#include "apps/common/shell_line.h"

#include <algorithm>

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trim(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// Removes a quoted text from the front of `text`; false if the closing quote is missing.
bool TakeQuoted(std::string_view& text, std::string& content) {
    text.remove_prefix(1);
    for (;;) {
        const std::size_t quote = text.find('"');
        if (quote == std::string_view::npos) {
            return false;
        }
        content += text.substr(0, quote);
        text.remove_prefix(quote + 1);
        if (!text.starts_with('"')) {
            return true;
        }
        content += '"';
        text.remove_prefix(1);
    }
}

} // namespace

ShellLine::ShellLine(std::string_view line) {
    const std::string_view text = Trim(line);
    if (text.empty() || text.front() == '#') {
        return;
    }
    const std::size_t end = std::min(text.find_first_of(kBlanks), text.size());
    name = text.substr(0, end);
    rest = Trim(text.substr(end));
    Split(rest);
}

void ShellLine::Split(std::string_view text) {
    while (!(text = Trim(text)).empty()) {
        std::string argument;
        if (text.front() == '"') {
            if (!TakeQuoted(text, argument)) {
                error = "a double quote is missing";
                return;
            }
            if (!text.empty() && kBlanks.find(text.front()) == std::string_view::npos) {
                error = "a blank is missing behind a double quote";
                return;
            }
        } else {
            const std::size_t end = std::min(text.find_first_of(kBlanks), text.size());
            argument = text.substr(0, end);
            text.remove_prefix(end);
        }
        arguments.push_back(std::move(argument));
    }
}
