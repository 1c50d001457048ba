// guarded.h - keeps exceptions inside the library
#pragma once

#include <utility>

/// Runs `body` and answers its result, or `otherwise` when it throws: nothing but exhausted memory
/// and exhausted system objects throws in here, and no exception may leave an operation.
template <typename Result, typename Body>
Result Guarded(Result otherwise, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return otherwise;
    }
}
