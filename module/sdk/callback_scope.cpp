// callback_scope.cpp - whether the calling thread is inside a frame callback of the SDK
#include "sdk/callback_scope.h"

namespace {

thread_local unsigned depth = 0;

} // namespace

CallbackScope::CallbackScope() {
    ++depth;
}

CallbackScope::~CallbackScope() {
    --depth;
}

bool CallbackScope::IsInside() {
    return depth > 0;
}
