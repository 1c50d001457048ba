// recording_sink.h - a log sink that keeps what it is given
#pragma once

#include "mivora/log_sink.h"
#include "platform/mutex.h"

#include <string>
#include <vector>

namespace support {

/// Formats every line as the host does and keeps it as "LEVEL TEXT", in order. Any thread.
class RecordingSink : public ILogSink {
public:
    virtual ~RecordingSink() = default;

    void Write(int level, const char* format, ...) override;
    void WriteError(const char* text) override;

    std::vector<std::string> Lines() const;
    /// The lines so far, which are forgotten.
    std::vector<std::string> Take();
    /// Waits until one of the kept lines is `line`, as in "1 Found it"; false when there is none
    /// after `timeoutMs` milliseconds.
    bool WaitForLine(const std::string& line, unsigned timeoutMs = 10000) const;

private:
    void Keep(int level, const std::string& text);

    mutable platform::Mutex mutex;
    std::vector<std::string> lines GUARDED_BY(mutex);
};

} // namespace support
