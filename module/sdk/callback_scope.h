// callback_scope.h - whether the calling thread is inside a callback of the SDK
#pragma once

#include "pxnc.h"

namespace pyxen {

/// Marks the calling thread as inside a frame callback for the scope's life. The camera SDK refuses
/// there what waits for frames, and closing a camera, of whichever grabber.
class CallbackScope {
public:
    /// `owner` receives `frame`, which stays its own meanwhile.
    CallbackScope(const void* frameOwner, PxnFrame* receivedFrame)
        : owner(frameOwner), frame(receivedFrame), outer(innermost) {
        innermost = this;
    }
    ~CallbackScope() { innermost = outer; }
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;

    /// True when the calling thread is inside the frame callback of any grabber of this module.
    static bool IsInside();
    /// The frame that the calling thread is receiving for `owner`, or null.
    static PxnFrame* FrameOf(const void* owner);

private:
    static constinit thread_local const CallbackScope* innermost;

    const void* const owner;
    PxnFrame* const frame;
    const CallbackScope* const outer;
};

/// Marks the calling thread as inside an invalidation callback for the scope's life. The camera SDK
/// waits for it where it closes a camera or takes a registration back.
class EventScope {
public:
    EventScope() { ++depth; }
    ~EventScope() { --depth; }
    EventScope(const EventScope&) = delete;
    EventScope& operator=(const EventScope&) = delete;

    /// True when the calling thread is inside any invalidation callback of this module.
    static bool IsInside();

private:
    static constinit thread_local unsigned depth;
};

} // namespace pyxen
