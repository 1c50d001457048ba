// recording_sink.h - a log sink that records all lines
#pragma once

#include "mivora/log_sink.h"
#include "platform/mutex.h"

#include <string>
#include <vector>

namespace support {

/// Formats every line as the host does and records it as "LEVEL TEXT". Any thread.
class RecordingSink : public ILogSink {
public:
    virtual ~RecordingSink() = default;

    void Write(int level, const char* format, ...) override;
    void WriteError(const char* text) override;

    /// The lines recorded so far, in order.
    std::vector<std::string> Lines() const;
    /// Returns the lines recorded so far and clears the record.
    std::vector<std::string> Take();
    /// Waits up to `timeoutMs` milliseconds until `line`, such as "1 Found it", has been recorded;
    /// false on timeout.
    bool WaitForLine(const std::string& line, unsigned timeoutMs = 10000) const;

private:
    void Keep(int level, const std::string& text);

    mutable platform::Mutex mutex;
    std::vector<std::string> lines GUARDED_BY(mutex);
};

} // namespace support
