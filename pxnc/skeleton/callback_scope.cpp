// callback_scope.cpp - whether the calling thread is inside a callback of the SDK
#include "pxnc/skeleton/callback_scope.h"

namespace skeleton {
namespace {

thread_local CallbackKind innermost = CallbackKind::kNone;
thread_local int refusingCallbacks = 0;

bool RefusesWaiting(CallbackKind kind) {
    return kind == CallbackKind::kFrame || kind == CallbackKind::kChunk;
}

} // namespace

CallbackScope::CallbackScope(CallbackKind kind) : outer(innermost) {
    innermost = kind;
    refusingCallbacks += RefusesWaiting(kind) ? 1 : 0;
}

CallbackScope::~CallbackScope() {
    refusingCallbacks -= RefusesWaiting(innermost) ? 1 : 0;
    innermost = outer;
}

bool InsideCallback() {
    return innermost != CallbackKind::kNone;
}

bool WaitingIsRefused() {
    return refusingCallbacks > 0;
}

} // namespace skeleton
