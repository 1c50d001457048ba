// callback_scope.h - whether the calling thread is inside a callback of the SDK
#pragma once

namespace skeleton {

/// Which callback of the host runs.
enum class CallbackKind { kNone, kFrame, kInvalidation, kChunk };

/// Marks the calling thread as running a callback of the host while it lives. Scopes nest.
class CallbackScope {
public:
    /// Begins to mark the calling thread.
    explicit CallbackScope(CallbackKind kind);
    ~CallbackScope();
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;

private:
    const CallbackKind outer;
};

/// True inside any callback.
bool InsideCallback();
/// True inside a frame or chunk callback, where functions that wait for callbacks are refused.
bool WaitingIsRefused();

} // namespace skeleton
