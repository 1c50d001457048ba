// log_file.h - the log sink of the command-line programs
#pragma once

#include "mivora/log_sink.h"
#include "platform/mutex.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <string>

/// Writes "LEVEL TEXT" lines to a file, to standard error, or nowhere. One call is one line,
/// whatever its length: line ends inside a text are written as \r and \n. Every line is flushed;
/// the first that cannot be written is told on standard error.
///
/// Lines of level 0 are kept as well, the last few of them, so that a command that fails can say
/// why. Any thread may write.
class LogFile final : public ILogSink {
public:
    LogFile() = default;
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// "-" is standard error; an empty path discards. Throws CommandFailure when the file cannot
    /// be written.
    void Open(const std::string& path);

    void Write(int level, const char* format, ...) override;
    void WriteError(const char* text) override;

    /// The level-0 lines since the last call, at most the last eight; they are forgotten.
    std::deque<std::string> TakeErrors();
    /// Frames that the module reported as received in error since the log was made.
    std::uint64_t ReceiveErrors() const { return receiveErrors.load(); }

private:
    void Keep(int level, std::string text);

    std::atomic<std::uint64_t> receiveErrors{0};
    std::atomic<bool> listening{false}; // somebody reads lines of every level

    platform::Mutex mutex;
    std::FILE* file GUARDED_BY(mutex) = nullptr;
    bool incomplete GUARDED_BY(mutex) = false; // a line could not be written
    std::deque<std::string> errors GUARDED_BY(mutex);
};
