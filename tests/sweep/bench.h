// bench.h - runs a scenario with one failure in it
#pragma once

#include "tests/support/environment_guard.h"
#include "tests/support/no_settling.h"
#include "tests/support/temporary_directory.h"
#include "tests/sweep/gate/sweep_gate.h"
#include "tests/sweep/scenarios.h"
#include "tests/sweep/transcript.h"

#include "platform/shared_library.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sweep {

/// What makes something fail between the first and the last swept operation.
struct Failure {
    std::function<void()> begin;
    std::function<void()> end;
};

/// Runs a scenario in this process: the module, the gate, the scripted SDK. At every call the SDK
/// writes into all frames that it has.
///
/// Checks after every run that the SDK has nothing left and that a grabber beside worked all the
/// time; what the runs return and log is compared by others.
class Bench {
public:
    explicit Bench(const Scenario& scenarioToRun);
    ~Bench();
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    /// From the first swept operation until the process has worked again twice.
    Transcript Run(bool isBeside, const Failure& failure);
    /// The same without a failure; `calls` get the texts of the calls of the swept operations, a
    /// text that was there before with its number.
    Transcript RunSoundly(bool isBeside, std::vector<std::string>& calls);

    void GiveOrder(const GateOrder* order) { giveOrder(order); }
    std::uint32_t CountCalls() { return countCalls(); }

private:
    class Beside;

    void ExpectNothingLeft();
    Step WhatIsLeft(bool isBeside);

    const Scenario& scenario;
    const support::NoSettling noSettling;
    const support::TemporaryDirectory directory;
    const support::EnvironmentGuard home;
    const support::EnvironmentGuard behind;
    platform::SharedLibrary gate; // held, so that its counters stay
    GiveGateOrder giveOrder = nullptr;
    CountGateCalls countCalls = nullptr;
    SetGateHooks setHooks = nullptr;
    scripted::Sdk& sdk = scripted::GetSdk();
    Transcript soundBefore; // of the first run, before the swept operations
};

} // namespace sweep
