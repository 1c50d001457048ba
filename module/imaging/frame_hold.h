// frame_hold.h - who may write to the memory of a frame
#pragma once

#include "pxnc.h"

#include <atomic>
#include <cstdint>

namespace pyxen {

/// Tells whether a frame's memory belongs to the SDK.
///
/// It does from before the frame is queued until the callback that brings it back has returned, or
/// until the SDK has given everything back. Every change has a number of its own, so that a return
/// counts only for frames that have not been queued anew meanwhile. Lock-free; any thread.
class FrameHold {
public:
    /// The state at one moment.
    using Moment = std::uint64_t;

    /// Nobody but this module has the frame.
    bool IsHome() const { return !IsWithSdk(); }
    bool IsWithSdk() const { return IsSdks(moment); }
    Moment Now() const { return moment; }
    /// True when the frame is home and has not been queued since `seen`.
    bool IsHomeSince(Moment seen) const {
        return moment == (IsSdks(seen) ? Next(seen, kModule) : seen);
    }

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
    /// A wait for the frame has ended well.
    void Return() { Change(kModule); }
    /// The SDK has given back what it had at `seen`.
    void ReturnIfUnchanged(Moment seen) {
        // Compared first: a frame that its callback has queued anew costs no exchange.
        if (IsSdks(seen) && moment == seen) {
            moment.compare_exchange_strong(seen, Next(seen, kModule));
        }
    }

private:
    enum Holder : std::uint64_t { kModule, kSdk };
    static constexpr Moment kHolderMask = 1;
    static constexpr Moment kStep = 2;

    static bool IsSdks(Moment state) { return (state & kHolderMask) == kSdk; }
    static Moment Next(Moment state, Holder holder) {
        return (state & ~kHolderMask) + kStep + holder;
    }
    Moment Change(Holder holder) {
        Moment before = moment;
        while (!moment.compare_exchange_weak(before, Next(before, holder))) {
        }
        return before;
    }

    std::atomic<Moment> moment{kModule};
};

} // namespace pyxen
