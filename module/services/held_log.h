// held_log.h - log lines that are written later
#pragma once

#include "mivora/log_sink.h"
#include "sdk/logger.h"

#include <string>
#include <vector>

namespace pyxen {

/// Keeps the lines that are written to it for the host's sink, which may not be called while a lock
/// is held. One thread.
class HeldLog final : private ILogSink {
public:
    explicit HeldLog(Logger hostLog) : target(hostLog) {}
    /// Writes the lines, in their order.
    ~HeldLog();
    HeldLog(const HeldLog&) = delete;
    HeldLog& operator=(const HeldLog&) = delete;

    /// Without a sink of the host nothing is formatted.
    Logger Log() { return target ? Logger(this) : Logger(); }

private:
    struct Line {
        int level;
        bool isPlain; // from WriteError
        std::string text;
    };

    void Write(int level, const char* format, ...) override;
    void WriteError(const char* text) override;

    const Logger target;
    std::vector<Line> lines;
};

} // namespace pyxen
