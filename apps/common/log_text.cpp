// log_text.cpp - formats log lines
#include "apps/common/log_text.h"

#include "mivora/log_sink.h"

#include <array>

std::string FormatLogLine(const char* format, va_list arguments) {
    std::array<char, 512> line;
    va_list again;
    va_copy(again, arguments);
    const std::size_t length = MivoraFormatLogText(line.data(), line.size(), format, arguments);
    std::string text;
    if (length < line.size()) {
        text.assign(line.data(), length);
    } else {
        text.resize(length + 1);
        MivoraFormatLogText(text.data(), text.size(), format, again);
        text.resize(length);
    }
    va_end(again);
    return text;
}

void EscapeLineEnds(std::string& text) {
    for (std::size_t at = 0; (at = text.find_first_of("\r\n", at)) != std::string::npos; at += 2) {
        text.replace(at, 1, text[at] == '\n' ? "\\n" : "\\r");
    }
}
