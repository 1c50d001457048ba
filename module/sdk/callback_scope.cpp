// callback_scope.cpp - whether the calling thread is inside a callback of the SDK
#include "sdk/callback_scope.h"

namespace pyxen {

constinit thread_local const CallbackScope* CallbackScope::innermost = nullptr;

bool CallbackScope::IsInside() {
    return innermost != nullptr;
}

PxnFrame* CallbackScope::FrameOf(const void* owner) {
    for (const CallbackScope* scope = innermost; scope; scope = scope->outer) {
        if (scope->owner == owner) {
            return scope->frame;
        }
    }
    return nullptr;
}

constinit thread_local unsigned EventScope::depth = 0;

bool EventScope::IsInside() {
    return depth > 0;
}

} // namespace pyxen
