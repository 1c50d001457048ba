// held_log.cpp - log lines that are written later
#include "services/held_log.h"

#include "sdk/no_throw.h"

#include <cstdarg>

namespace pyxen {

void HeldLog::Write(int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    // Out of memory the line is lost: there is nobody to report that to.
    NoThrow(false, [&] {
        std::string text(MivoraFormatLogText(nullptr, 0, format, arguments), '\0');
        MivoraFormatLogText(text.data(), text.size() + 1, format, arguments);
        lines.push_back({level, false, std::move(text)});
        return true;
    });
    va_end(arguments);
}

void HeldLog::WriteError(const char* text) {
    NoThrow(false, [&] {
        lines.push_back({kMvLogError, true, text});
        return true;
    });
}

HeldLog::~HeldLog() {
    for (const Line& line : lines) {
        NoThrow(false, [&] {
            if (line.isPlain) {
                target.ErrorText(line.text.c_str());
            } else if (line.level == kMvLogError) {
                target.Error("%s", line.text.c_str());
            } else {
                target.Information("%s", line.text.c_str());
            }
            return true;
        });
    }
}

} // namespace pyxen
