// callback_scope.h - whether the calling thread is inside a callback of the SDK
#pragma once

namespace pyxen {

/// Marks the calling thread as inside a frame callback for the scope's life. The camera SDK refuses
/// there what waits for frames, and closing a camera, of whichever grabber.
class CallbackScope {
public:
    CallbackScope() { ++depth; }
    ~CallbackScope() { --depth; }
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;

    /// True when the calling thread is inside the frame callback of any grabber of this module.
    static bool IsInside();

private:
    static constinit thread_local unsigned depth;
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
