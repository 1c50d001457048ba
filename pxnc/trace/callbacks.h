// callbacks.h - callbacks that are traced
//
// Each of the host's callback functions gets a function of its own here, which traces and calls it.
// So the SDK sees different callbacks as different ones, and contexts pass untouched.
#pragma once

#include "pxnc.h"

namespace sdktrace {

/// What the SDK gets in place of an argument: for a callback always the same traced function, null
/// for null. When all functions are taken it is the callback itself, which is not traced then. Any
/// thread.
PxnFrameCallback Substitute(PxnFrameCallback callback) noexcept;
PxnInvalidationCallback Substitute(PxnInvalidationCallback callback) noexcept;
PxnChunkAccessCallback Substitute(PxnChunkAccessCallback callback) noexcept;

/// Everything else is passed on as it is.
template <typename T>
T Substitute(T argument) noexcept {
    return argument;
}

} // namespace sdktrace
