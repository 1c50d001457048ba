// log_text.cpp - formats log lines
#include "apps/common/log_text.h"

#include "mivora/log_sink.h"

#include <array>
#include <cstdio>

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

std::string UtcTimeText(std::chrono::system_clock::time_point time) {
    using std::chrono::floor;
    const auto day = floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(floor<std::chrono::microseconds>(time - day));
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%06dZ",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()),
                  static_cast<int>(clock.subseconds().count()));
    return text.data();
}
