// line_sink.h - a log sink that keeps its lines
#pragma once

#include "mivora/log_sink.h"

#include <string>
#include <vector>

struct LogLine {
    int level;
    std::string text;
};

/// Keeps its lines in memory. One thread.
class LineSink final : public ILogSink {
public:
    virtual ~LineSink() = default;

    void Write(int level, const char* format, ...) override;
    void WriteError(const char* text) override;

    const std::vector<LogLine>& Lines() const { return lines; }

private:
    std::vector<LogLine> lines;
};
