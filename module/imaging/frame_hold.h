// frame_hold.h - who may write to the memory of a frame
#pragma once

#include "pxnc.h"

#include <atomic>
#include <cstdint>

/// Tells whether a frame's memory belongs to the SDK.
///
/// It does from before the frame is queued until the frame has come back, and during the callback
/// that brings it back. Every change has a number of its own, so that a general return (a flush)
/// counts only for frames that have not been queued anew meanwhile. Lock-free; any thread.
class FrameHold {
public:
    /// The state at one moment.
    using Moment = std::uint64_t;

    /// Nobody but this module has the frame.
    bool IsHome() const { return HolderIn(moment) == kModule; }
    /// It is queued.
    bool IsWithSdk() const { return HolderIn(moment) == kSdk; }
    Moment Now() const { return moment; }

    /// The frame is about to be queued. Returns the state before.
    Moment BeginQueue() { return Change(kSdk); }
    /// Queueing was refused: all is again as `before`. A frame that the SDK has queued already is
    /// the SDK's.
    void QueueRefused(Moment before, PxnError result) {
        if (result != PxnErrAlready) {
            Moment queued = Next(before, kSdk);
            moment.compare_exchange_strong(queued, before);
        }
    }
    /// A callback begins. Returns the state during it.
    Moment BeginCallback() { return Next(Change(kCallback), kCallback); }
    /// It has ended. What it queued anew stays the SDK's.
    void EndCallback(Moment during) { ChangeFrom(during, kModule); }
    /// A wait for the frame has ended well.
    void Return() { Change(kModule); }
    /// The SDK gave everything back that it had at `seen`.
    void ReturnIfUnchanged(Moment seen) {
        if (HolderIn(seen) == kSdk) {
            ChangeFrom(seen, kModule);
        }
    }

private:
    enum Holder : std::uint64_t { kModule, kSdk, kCallback };
    static constexpr Moment kHolderMask = 3;
    static constexpr Moment kStep = 4;

    static Holder HolderIn(Moment state) { return static_cast<Holder>(state & kHolderMask); }
    static Moment Next(Moment state, Holder holder) {
        return (state & ~kHolderMask) + kStep + holder;
    }
    Moment Change(Holder holder) {
        Moment before = moment;
        while (!moment.compare_exchange_weak(before, Next(before, holder))) {
        }
        return before;
    }
    void ChangeFrom(Moment expected, Holder holder) {
        moment.compare_exchange_strong(expected, Next(expected, holder));
    }

    std::atomic<Moment> moment{kModule};
};
