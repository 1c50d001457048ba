// format_text.cpp - texts formatted as the log formats its lines
#include "sdk/format_text.h"

#include "mivora/log_sink.h"

#include <cstdarg>

namespace pyxen {

std::string FormatUnchecked(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const std::size_t length = MivoraFormatLogText(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text;
    try {
        text.resize(length + 1);
    } catch (...) {
        va_end(again);
        throw;
    }
    MivoraFormatLogText(text.data(), text.size(), format, again);
    va_end(again);
    text.resize(length);
    return text;
}

} // namespace pyxen
