#include "pxnc/genicam/callback_scope.h"

namespace genicam {

namespace {

thread_local CallbackScope::Kind currentKind = CallbackScope::Kind::None;
thread_local const void* currentOwner = nullptr;

} // namespace

CallbackScope::CallbackScope(Kind callbackKind, const void* callbackOwner)
    : outerKind(currentKind), outerOwner(currentOwner) {
    currentKind = callbackKind;
    currentOwner = callbackOwner;
}

CallbackScope::~CallbackScope() {
    currentKind = outerKind;
    currentOwner = outerOwner;
}

CallbackScope::Kind CallbackScope::CurrentKind() {
    return currentKind;
}

const void* CallbackScope::CurrentOwner() {
    return currentOwner;
}

} // namespace genicam
