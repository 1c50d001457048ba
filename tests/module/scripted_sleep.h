// scripted_sleep.h - the settling pauses in the test's hands
#pragma once

#include <cstdint>
#include <vector>

/// Replaces platform::SleepMs for its life: pauses are noted and end at once, or wait at the gate
/// while it is shut. One at a time.
class ScriptedSleep {
public:
    ScriptedSleep();
    ~ScriptedSleep();
    ScriptedSleep(const ScriptedSleep&) = delete;
    ScriptedSleep& operator=(const ScriptedSleep&) = delete;

    /// Pauses last from now on until Open.
    void Shut();
    void Open();
    /// Waits until someone rests at the gate; false when nobody does after ten seconds.
    bool WaitForSleeper();
    /// The pauses so far in milliseconds, which are forgotten.
    std::vector<std::uint32_t> Take();
};
