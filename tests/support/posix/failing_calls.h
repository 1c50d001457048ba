// failing_calls.h - calls of the C library that fail on demand
//
// In the program that links it, calls of the functions listed in failing_calls.cpp fail while a
// FailingCalls object says so. Shared libraries are not affected.
#pragma once

namespace support {

/// While it exists, the next `count` calls of `function` fail with `code`, after `spared` that do
/// not. One object at a time.
class FailingCalls {
public:
    FailingCalls(const char* function, int code, int count = 1, int spared = 0);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    /// Calls that have failed so far.
    int Failed() const;
};

} // namespace support
