// callback_scope.h - tells whether the calling thread is inside a callback of this SDK
#pragma once

namespace pxsim {

enum class CallbackKind { kNone, kFrame, kInvalidation };

/// Marks the calling thread as running a callback while it lives.
class CallbackScope {
public:
    explicit CallbackScope(CallbackKind kind);
    ~CallbackScope();
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;
};

bool InsideCallback();
/// True inside a frame callback: what would wait for that callback is refused there.
bool InsideFrameCallback();

} // namespace pxsim
