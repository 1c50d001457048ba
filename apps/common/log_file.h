// log_file.h - the log sink of the programs
#pragma once

#include "mivora/log_sink.h"
#include "platform/mutex.h"

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <string>

/// Gets each line that is logged, on the thread that logs it; must not log itself.
class ILogObserver {
public:
    virtual ~ILogObserver() = default;
    virtual void OnLogLine(int level, const std::string& text) = 0;
};

/// Writes lines of "LEVEL TEXT", on request of "TIME LEVEL TEXT", to a file, to standard error, or
/// nowhere. Each call writes one line of any length: line ends within the text are written as \r
/// and \n. Every line is flushed; the first one that cannot be written, for lack of memory as
/// well, is reported on standard error.
///
/// The last few lines of level 0 are also kept, so that a failing command can report the reason.
/// Any thread may write.
class LogFile final : public ILogSink {
public:
    LogFile() = default;
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// "-" is standard error; an empty path discards all lines. With `hasTimes` each line begins
    /// with the time in UTC. Throws CommandFailure if the file cannot be opened.
    void Open(const std::string& path, bool hasTimes = false);

    void Write(int level, const char* format, ...) override;
    void WriteError(const char* text) override;

    /// Names who gets all lines from now on, besides the file; null for nobody. The former one is
    /// not called any more once this has returned.
    void Watch(ILogObserver* newObserver);

    /// Returns and clears the level-0 lines since the last call, at most the last eight.
    std::deque<std::string> TakeErrors();
    /// The line about a feature synchronisation file that the module has begun to read and not read
    /// successfully since the last call; empty for none.
    std::string TakeUnreadSyncFile();
    /// Frames that the module has reported as received in error since construction.
    std::uint64_t ReceiveErrors() const { return receiveErrors.load(); }

private:
    template <typename MakeText>
    void KeepIfPossible(int level, MakeText makeText) noexcept;
    void Keep(int level, std::string text);
    void NoteSyncFile(const char* format, va_list arguments) noexcept;

    std::atomic<std::uint64_t> receiveErrors{0};
    std::atomic<bool> listening{false}; // lines of all levels are wanted

    platform::Mutex observerMutex; // held while the observer is called
    ILogObserver* observer GUARDED_BY(observerMutex) = nullptr;

    platform::Mutex mutex;
    std::FILE* file GUARDED_BY(mutex) = nullptr;
    bool isTimed GUARDED_BY(mutex) = false;
    bool incomplete GUARDED_BY(mutex) = false; // a line could not be written
    std::deque<std::string> errors GUARDED_BY(mutex);
    std::string unreadSyncFile GUARDED_BY(mutex);
};
