// one_line.cpp - texts of several lines in one
#include "apps/common/one_line.h"

#include <algorithm>

std::string OneLine(const std::string& lines) {
    std::string text;
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = std::min(lines.find('\n', at), lines.size());
        const std::size_t begin = std::min(lines.find_first_not_of(' ', at), end);
        text += (text.empty() ? "" : "; ") + lines.substr(begin, end - begin);
        at = end + 1;
    }
    return text;
}
