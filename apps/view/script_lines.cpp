// script_lines.cpp - splits a script for the SDK's control interface into commands
#include "apps/view/script_lines.h"

#include <sstream>

std::vector<std::string> ScriptLines(const std::string& text) {
    constexpr const char* kBlanks = " \t\r";
    std::vector<std::string> lines;
    std::istringstream stream(text);
    std::string line;
    while (std::getline(stream, line)) {
        const std::size_t begin = line.find_first_not_of(kBlanks);
        if (begin != std::string::npos && line[begin] != '#') {
            lines.push_back(line.substr(begin, line.find_last_not_of(kBlanks) + 1 - begin));
        }
    }
    return lines;
}
