// start_gate.h - several acquisitions start at the same moment
#pragma once

#include "platform/condition.h"
#include "platform/mutex.h"

#include <cstddef>

/// Holds the threads of the runs back until all of them are prepared. Any thread.
class StartGate {
public:
    explicit StartGate(std::size_t runsToCome) : runs(runsToCome) {}

    /// Prepared: waits until the others are as well. False if one of them gives up.
    bool Pass();
    /// After Pass: the acquisition has started. True for the last one.
    bool IsLastToStart();
    /// One of the runs has failed: nobody is waited for, and the others are to end.
    void GiveUp();
    bool IsGivenUp() const;

private:
    const std::size_t runs;

    mutable platform::Mutex mutex; // held for moments only
    platform::Condition changed;
    std::size_t prepared GUARDED_BY(mutex) = 0;
    std::size_t started GUARDED_BY(mutex) = 0;
    bool isGivenUp GUARDED_BY(mutex) = false;
};
