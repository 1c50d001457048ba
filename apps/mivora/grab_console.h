// grab_console.h - what the runs of the command "grab" show while they run
#pragma once

#include "apps/mivora/grab_progress.h"
#include "platform/mutex.h"

#include <cstddef>
#include <string>
#include <vector>

/// Shows on standard error how far all runs together have come, and what happens to them. Any
/// thread.
class GrabConsole {
public:
    GrabConsole(bool isProgressAskedFor, std::size_t runs);

    /// What the run of this number has done so far.
    void Show(std::size_t run, const GrabProgress& progress);
    /// Says something on a line of its own.
    void Say(const std::string& text);
    /// Makes room for another line on the terminal.
    void Clear();

private:
    platform::Mutex mutex; // also held while standard error is written to
    std::vector<GrabProgress> latest GUARDED_BY(mutex);
    ProgressDisplay display GUARDED_BY(mutex);
};
