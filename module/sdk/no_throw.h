// no_throw.h - keeps exceptions inside the module
#pragma once

namespace pyxen {

/// Runs `operation` and returns its result, or `onFailure` if it throws. Every operation that the
/// host calls and that may run out of memory goes through here.
template <typename Result, typename Operation>
Result NoThrow(Result onFailure, Operation operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return onFailure;
    }
}

} // namespace pyxen
