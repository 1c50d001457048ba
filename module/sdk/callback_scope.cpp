// callback_scope.cpp - whether the calling thread is inside a callback of the SDK
#include "sdk/callback_scope.h"

namespace pyxen {

constinit thread_local unsigned CallbackScope::depth = 0;

bool CallbackScope::IsInside() {
    return depth > 0;
}

constinit thread_local unsigned EventScope::depth = 0;

bool EventScope::IsInside() {
    return depth > 0;
}

} // namespace pyxen
