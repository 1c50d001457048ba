// findings.h - what a check has found
#pragma once

#include "platform/mutex.h"
#include "pxnc.h"

#include <cstddef>
#include <stdexcept>
#include <string>

namespace conformance {

/// Ends a check that does not apply to the SDK or the camera; the text says why.
class NotApplicable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Ends a check whose remainder depends on what has failed.
class CheckEnded : public std::runtime_error {
public:
    CheckEnded() : std::runtime_error("ended") {}
};

/// Collects the failures of one check. Any thread, callbacks of the SDK included.
class Findings {
public:
    /// Notes `failure` unless `holds`. Returns `holds`.
    bool Expect(bool holds, const std::string& failure) EXCLUDES(mutex);
    /// Notes "CALL returned FOUND, not EXPECTED" unless both are the same.
    bool ExpectResult(PxnError expected, PxnError found, const std::string& call);
    bool ExpectSuccess(PxnError found, const std::string& call) {
        return ExpectResult(PxnErrSuccess, found, call);
    }
    /// As ExpectSuccess and Expect; throw CheckEnded after a failure.
    void RequireSuccess(PxnError found, const std::string& call);
    void Require(bool holds, const std::string& failure);

    bool HasFailures() const EXCLUDES(mutex);
    /// The first failures and the number of the others; empty when there are none.
    std::string Text() const EXCLUDES(mutex);

private:
    mutable platform::Mutex mutex;
    std::string text GUARDED_BY(mutex);
    std::size_t count GUARDED_BY(mutex) = 0;
};

} // namespace conformance
