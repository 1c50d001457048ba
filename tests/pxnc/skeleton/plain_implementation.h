// plain_implementation.h - an implementation without cameras, which records its starts
#pragma once

#include "pxnc/skeleton/backend.h"

#include <memory>

namespace skeleton_tests {

/// The implementation behind the SDK functions of this program.
struct PlainImplementation : skeleton::Implementation {
    static PlainImplementation& Instance();

    PxnVersionInfo Version() override { return {7, 8, 9}; }
    PxnError Start(const wchar_t* configPath, std::shared_ptr<skeleton::Backend>& started) override;
    PxnError OnCall(const skeleton::EntryCall& call) override;

    PxnError startResult = PxnErrSuccess;
    PxnError callResult = PxnErrSuccess; // of every function but PxnShutdown
    int starts = 0;
    int stops = 0;
};

} // namespace skeleton_tests
