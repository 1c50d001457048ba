// callback_turns.h - one frame callback of a camera at a time
#pragma once

#include "platform/mutex.h"
#include "pxnc/skeleton/condition.h"

namespace skeleton {

/// Shared by the streams of a camera, whose frame callbacks must not overlap. No lock is held while
/// a callback runs: the others wait for their turn.
class CallbackTurns {
public:
    /// Takes the turn for its lifetime; waits while another thread has it.
    class Turn {
    public:
        /// Waits for the turn.
        explicit Turn(CallbackTurns& turnsOfCamera) : turns(turnsOfCamera) { turns.Begin(); }
        ~Turn() { turns.End(); }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        CallbackTurns& turns;
    };

private:
    void Begin() {
        platform::MutexLock lock(mutex);
        while (isTaken) {
            changed.Wait(mutex);
        }
        isTaken = true;
    }
    void End() {
        platform::MutexLock lock(mutex);
        isTaken = false;
        changed.NotifyAll();
    }

    platform::Mutex mutex;
    Condition changed;
    bool isTaken GUARDED_BY(mutex) = false;
};

} // namespace skeleton
