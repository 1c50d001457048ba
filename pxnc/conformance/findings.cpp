// findings.cpp - what a check has found
#include "pxnc/conformance/findings.h"

namespace conformance {
namespace {

constexpr std::size_t kShownFailures = 4;

} // namespace

bool Findings::Expect(bool holds, const std::string& failure) {
    if (!holds) {
        platform::MutexLock lock(mutex);
        if (++count <= kShownFailures) {
            text += (text.empty() ? "" : "; ") + failure;
        }
    }
    return holds;
}

bool Findings::ExpectResult(PxnError expected, PxnError found, const std::string& call) {
    return Expect(expected == found, call + " returned " + std::to_string(found) + ", not " +
                                         std::to_string(expected));
}

void Findings::RequireSuccess(PxnError found, const std::string& call) {
    if (!ExpectSuccess(found, call)) {
        throw CheckEnded();
    }
}

void Findings::Require(bool holds, const std::string& failure) {
    if (!Expect(holds, failure)) {
        throw CheckEnded();
    }
}

bool Findings::HasFailures() const {
    platform::MutexLock lock(mutex);
    return count > 0;
}

std::string Findings::Text() const {
    platform::MutexLock lock(mutex);
    return count > kShownFailures
               ? text + "; and " + std::to_string(count - kShownFailures) + " more"
               : text;
}

} // namespace conformance
