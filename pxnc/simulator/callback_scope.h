// callback_scope.h - tells whether the calling thread is inside a callback of this SDK
#pragma once

#include "pxnc/simulator/clock.h"

namespace pxsim {

enum class CallbackKind { kNone, kFrame, kInvalidation };

/// Marks the calling thread as running a callback while it lives.
class CallbackScope {
public:
    /// A frame callback has the moment of its frame's timestamp.
    explicit CallbackScope(CallbackKind kind, Clock::time_point frameTime = {});
    ~CallbackScope();
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;
};

bool InsideCallback();
/// True inside a frame callback: what would wait for that callback is refused there.
bool InsideFrameCallback();
/// When the frame was taken whose callback this thread runs.
Clock::time_point CurrentFrameTime();

} // namespace pxsim
