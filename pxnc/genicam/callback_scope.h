// callback_scope.h - knows which user callback the present thread is inside
#pragma once

namespace genicam {

/// Marks the calling thread as being inside a callback of the user's for as long as it lives.
class CallbackScope {
public:
    enum class Kind {
        None,
        Frame,
        Invalidation,
        Chunk,
    };

    /// `callbackOwner` is the object whose callback runs.
    CallbackScope(Kind callbackKind, const void* callbackOwner);
    ~CallbackScope();
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;

    /// The innermost callback that this thread is inside.
    static Kind CurrentKind();
    static const void* CurrentOwner();

private:
    const Kind outerKind;
    const void* const outerOwner;
};

} // namespace genicam
