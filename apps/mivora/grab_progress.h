// grab_progress.h - shows how far a long run has come
#pragma once

#include <cstdint>
#include <string>

/// How far a run has come.
struct GrabProgress {
    std::uint64_t taken = 0;
    std::uint64_t wanted = 0; ///< 0: until the user interrupts
    std::uint64_t lost = 0;   ///< for whatever reason
    std::uint64_t written = 0;
    std::uint64_t waiting = 0; ///< to be written
    std::uint64_t bytes = 0;   ///< written; or, without a recording, of the images taken
    bool isRecorded = false;

    std::string Text(double megabytesPerSecond) const;
    GrabProgress& operator+=(const GrabProgress& other);
};

/// Shows progress on standard error: on a terminal as a line that is overwritten in place, and when
/// it is asked for, elsewhere as a line each second. One thread.
class ProgressDisplay {
public:
    explicit ProgressDisplay(bool isAskedFor);
    ~ProgressDisplay() { Clear(); }
    ProgressDisplay(const ProgressDisplay&) = delete;
    ProgressDisplay& operator=(const ProgressDisplay&) = delete;

    /// Cheap when it is not yet time for another line.
    void Show(const GrabProgress& progress);
    /// Makes room for another line on the terminal.
    void Clear();

private:
    const bool isTerminal;
    const std::uint64_t interval; // in nanoseconds; 0 shows nothing
    std::uint64_t last;
    std::uint64_t lastBytes = 0;
    std::size_t shown = 0; // characters on the terminal's line
};
