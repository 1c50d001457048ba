// guarded.h - keeps exceptions from leaving the library
#pragma once

#include <utility>

/// Returns the result of `body`, or `fallback` if it throws. Exceptions arise only when memory or
/// system objects are exhausted, and from receivers; none may leave an operation.
template <typename Result, typename Body>
Result Guarded(Result fallback, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return fallback;
    }
}
