// recording_sink.cpp - a log sink that records all lines
#include "tests/support/recording_sink.h"

#include "tests/support/wait_until.h"

#include <algorithm>
#include <cstdarg>
#include <utility>

namespace support {

void RecordingSink::Write(int level, const char* format, ...) {
    std::va_list arguments;
    std::va_list again;
    va_start(arguments, format);
    va_copy(again, arguments);
    std::string text(256, '\0');
    const std::size_t length = MivoraFormatLogText(text.data(), text.size(), format, arguments);
    if (length >= text.size()) {
        text.resize(length + 1);
        MivoraFormatLogText(text.data(), text.size(), format, again);
    }
    va_end(again);
    va_end(arguments);
    text.resize(length);
    Keep(level, text);
}

void RecordingSink::WriteError(const char* text) {
    Keep(kMvLogError, text);
}

std::vector<std::string> RecordingSink::Lines() const {
    const platform::MutexLock lock(mutex);
    return lines;
}

std::vector<std::string> RecordingSink::Take() {
    const platform::MutexLock lock(mutex);
    return std::exchange(lines, {});
}

bool RecordingSink::WaitForLine(const std::string& line, unsigned timeoutMs) const {
    return WaitUntil(
        [&] {
            const std::vector<std::string> kept = Lines();
            return std::find(kept.begin(), kept.end(), line) != kept.end();
        },
        timeoutMs);
}

void RecordingSink::Keep(int level, const std::string& text) {
    const platform::MutexLock lock(mutex);
    lines.push_back(std::to_string(level) + " " + text);
}

} // namespace support
