// calls.h - one call of every function, for what all of them have in common
#pragma once

#include "pxnc/conformance/sdk_library.h"

#include <cstdint>
#include <span>

namespace conformance {

inline constexpr const char* kNoFeature = "ThereIsNoSuchFeature";
inline constexpr const char* kNoCamera = "there-is-no-such-camera";

/// What a call is made with.
struct CallArguments {
    PxnHandle handle = nullptr;
    const char* feature = kNoFeature;
    const PxnFrame* frame = nullptr;
    PxnFrameCallback frameCallback = nullptr;
};

/// A call whose other arguments are in order.
struct Call {
    const char* function;
    bool hasHandle;
    bool hasFeature;
    std::uint32_t type; // PxnFeatureData of the features it takes; Unknown: any
    bool isWrite;       // of a feature
    PxnError (*run)(const SdkFunctions& sdk, const CallArguments& with);
};

/// All functions but PxnVersionQuery, PxnStartup and PxnShutdown, which need no startup.
std::span<const Call> AllCalls();
/// One of them by the name of its function.
const Call& FindCall(const char* function);

/// A call with an argument missing, or a list without an array but with a capacity.
struct IncompleteCall {
    const char* text;
    bool hasHandle;
    PxnError (*run)(const SdkFunctions& sdk, PxnHandle handle);
};
std::span<const IncompleteCall> IncompleteCalls();

/// A function that is given the size of a record.
struct SizedCall {
    const char* function;
    std::uint32_t size; // the right one
    bool hasHandle;
    /// With a feature that does not exist.
    PxnError (*run)(const SdkFunctions& sdk, PxnHandle handle, std::uint32_t size);
};
std::span<const SizedCall> SizedCalls();

} // namespace conformance
