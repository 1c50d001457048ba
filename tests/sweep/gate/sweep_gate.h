// sweep_gate.h - a library with the SDK's functions in front of another SDK's library
//
// It passes every call on, counts, and lets one call fail: refused, which the library behind does
// not see (but for PxnStartup), or done and then reported as failed. A test that loads it gives the
// order with the functions declared here; a program finds the order in its environment.
//
// Call names of programs are "PxnCaptureEnd", "PxnFeatureIntGet(Width)",
// "PxnMemoryRead(0x10000004)": with them a call is found again when others come earlier, later or
// not at all.
#pragma once

#include "pxnc.h"

#include <cstdint>

namespace sweep {

/// The nth call from now fails. 0: none does, the calls are only counted.
struct GateOrder {
    std::uint32_t nth = 0;
    PxnError code = PxnErrSuccess;
    bool isDone = false;        ///< reported as failed after the library behind has done it
    const char* call = nullptr; ///< only calls of this name count; null: all
};

/// What a test wants to know of. Each may be null.
struct GateHooks {
    void (*enter)() = nullptr; ///< a call of the SDK begins, on the calling thread
    void (*leave)() = nullptr; ///< it ends
    void (*write)() = nullptr; ///< inside each call, before anything else
};

// The names of the exported functions, and their types.
using GiveGateOrder = void (*)(const GateOrder* order); // null: nothing is counted any more
using CountGateCalls = std::uint32_t (*)();             // since the order was given
using SetGateHooks = void (*)(const GateHooks* hooks);  // null: none
inline constexpr const char* kGiveGateOrderName = "SweepGiveGateOrder";
inline constexpr const char* kCountGateCallsName = "SweepCountGateCalls";
inline constexpr const char* kSetGateHooksName = "SweepSetGateHooks";

// The environment of a program.
inline constexpr const char* kGateLibrary = "SWEEP_GATE_LIBRARY"; ///< path of the library behind
inline constexpr const char* kGateCall = "SWEEP_GATE_CALL";       ///< the name of a call
inline constexpr const char* kGateNth = "SWEEP_GATE_NTH"; ///< among those; 0 or absent: only count
inline constexpr const char* kGateCode = "SWEEP_GATE_CODE";
inline constexpr const char* kGateIsDone = "SWEEP_GATE_IS_DONE"; ///< 1: done, then failed
/// A file that is written when the program ends: a line with 1 when the call was made that was to
/// fail, else 0, then the names of all calls in their order, a line each.
inline constexpr const char* kGateReport = "SWEEP_GATE_REPORT";
/// The address of GateHooks in the program itself, in decimal.
inline constexpr const char* kGateHooks = "SWEEP_GATE_HOOKS";

/// A call on this thread, from its begin to its end. For the functions themselves.
class SdkVisit {
public:
    SdkVisit();
    ~SdkVisit();
    SdkVisit(const SdkVisit&) = delete;
    SdkVisit& operator=(const SdkVisit&) = delete;
};

/// What becomes of a call; the code is PxnErrSuccess when it is just passed on.
struct Verdict {
    PxnError code = PxnErrSuccess;
    bool isDone = false;
};

/// What a call is about, where its arguments name something that lasts.
struct CallObject {
    const char* feature = nullptr;
    std::uint64_t address = 0; ///< of a register; 0: none
};

/// Counts a call. `entry` is the function's name.
Verdict BeginCall(const char* entry, const CallObject& object = {});

} // namespace sweep
