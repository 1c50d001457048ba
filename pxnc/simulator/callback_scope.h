// callback_scope.h - tells whether the calling thread is inside a callback of this SDK
#pragma once

namespace pxsim {

/// Marks the calling thread as running a frame callback while it lives.
class FrameCallbackScope {
public:
    FrameCallbackScope();
    ~FrameCallbackScope();
    FrameCallbackScope(const FrameCallbackScope&) = delete;
    FrameCallbackScope& operator=(const FrameCallbackScope&) = delete;
};

/// True inside a frame callback: what would wait for that callback is refused there.
bool InsideFrameCallback();

} // namespace pxsim
