// log_file.cpp - the log sink of the programs
#include "apps/common/log_file.h"

#include "apps/common/command_failure.h"
#include "apps/common/log_text.h"
#include "platform/printable_text.h"

#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

constexpr std::size_t kKeptErrors = 8;
// Prefix of the format string of the module's line about a bad frame. The format is compared rather
// than the finished line, because frames may arrive by the thousand.
constexpr std::string_view kReceiveError = "CMivoraKVNPyxenClass::FrameCallback: Receive error: ";
// The same of the lines before and after a feature synchronisation file is read.
constexpr std::string_view kReadsSyncFile = "FeatureSyncher::Init: Loading ";
constexpr std::string_view kHasReadSyncFile =
    "CMivoraKVNPyxenClass::OpenActCamera: Successfully loaded ";

} // namespace

LogFile::~LogFile() {
    platform::MutexLock lock(mutex);
    if (file && file != stderr) {
        std::fclose(file);
    }
}

void LogFile::Open(const std::string& path, bool hasTimes) {
    if (path.empty()) {
        return;
    }
    std::FILE* const opened = path == "-" ? stderr : std::fopen(path.c_str(), "wb");
    if (!opened) {
        throw CommandFailure("cannot write the log file " + path + ": " +
                             std::generic_category().message(errno));
    }
    platform::MutexLock lock(mutex);
    file = opened;
    isTimed = hasTimes;
    listening = true;
}

void LogFile::Write(int level, const char* format, ...) {
    const std::string_view formatText = format;
    const bool badFrame = formatText.starts_with(kReceiveError);
    if (badFrame) {
        ++receiveErrors;
    } else if (formatText.starts_with(kReadsSyncFile) || formatText.starts_with(kHasReadSyncFile)) {
        va_list arguments;
        va_start(arguments, format);
        NoteSyncFile(format, arguments);
        va_end(arguments);
    }
    if (!listening.load(std::memory_order_relaxed) && (level != kMvLogError || badFrame)) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    KeepIfPossible(level, [&] { return FormatLogLine(format, arguments); });
    va_end(arguments);
}

void LogFile::WriteError(const char* text) {
    KeepIfPossible(kMvLogError, [text] { return std::string(text); });
}

// Nothing may be thrown through the module, which writes in the middle of its work.
template <typename MakeText>
void LogFile::KeepIfPossible(int level, MakeText makeText) noexcept {
    try {
        Keep(level, makeText());
    } catch (const std::bad_alloc&) {
        platform::MutexLock lock(mutex);
        if (file && !incomplete) {
            incomplete = true;
            std::fputs("the log lacks lines that could not be written: out of memory\n", stderr);
        }
    }
}

void LogFile::Watch(ILogObserver* newObserver) {
    {
        const platform::MutexLock lock(observerMutex);
        observer = newObserver;
    }
    const platform::MutexLock lock(mutex);
    listening = file || newObserver;
}

void LogFile::Keep(int level, std::string text) {
    EscapeLineEnds(text);
    {
        const platform::MutexLock lock(observerMutex);
        if (observer) {
            observer->OnLogLine(level, text);
        }
    }
    platform::MutexLock lock(mutex);
    if (file) {
        const std::string time =
            isTimed ? UtcTimeText(std::chrono::system_clock::now()) + ' ' : std::string();
        const std::string line = time + std::to_string(level) + ' ' +
                                 (file == stderr ? platform::PrintableText(text) : text) + '\n';
        const bool isWritten = std::fwrite(line.data(), 1, line.size(), file) == line.size();
        if ((std::fflush(file) != 0 || !isWritten) && !incomplete) {
            incomplete = true;
            std::fprintf(stderr, "the log lacks lines that could not be written: %s\n",
                         std::generic_category().message(errno).c_str());
        }
    }
    if (level == kMvLogError) {
        errors.push_back(std::move(text));
        if (errors.size() > kKeptErrors) {
            errors.pop_front();
        }
    }
}

void LogFile::NoteSyncFile(const char* format, va_list arguments) noexcept {
    std::string text;
    try {
        if (!std::string_view(format).starts_with(kHasReadSyncFile)) {
            text = FormatLogLine(format, arguments);
        }
    } catch (const std::bad_alloc&) {
        text = "Loading it..."; // short enough to need none
    }
    platform::MutexLock lock(mutex);
    unreadSyncFile = std::move(text);
}

std::string LogFile::TakeUnreadSyncFile() {
    platform::MutexLock lock(mutex);
    return std::exchange(unreadSyncFile, {});
}

std::deque<std::string> LogFile::TakeErrors() {
    platform::MutexLock lock(mutex);
    return std::exchange(errors, {});
}
