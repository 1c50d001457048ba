// callback_scope.cpp - whether the calling thread is inside a frame callback of the SDK
#include "sdk/callback_scope.h"

namespace pyxen {

constinit thread_local unsigned CallbackScope::depth = 0;

bool CallbackScope::IsInside() {
    return depth > 0;
}

} // namespace pyxen
