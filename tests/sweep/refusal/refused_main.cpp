// refused_main.cpp - the main function around that of a program
//
// The linker redirects the call of main to this one (--wrap).
#include "tests/sweep/refusal/refused_main.h"

#include "platform/environment.h"
#include "tests/support/allocations/failing_allocations.h"
#include "tests/sweep/gate/sweep_gate.h"
#include "tests/sweep/sdk_pauses.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" {
int __real_main(int argumentCount, char** arguments);
int __wrap_main(int argumentCount, char** arguments);
}

int __wrap_main(int argumentCount, char** arguments) {
    static const sweep::GateHooks hooks{&sweep::EnterSdk, &sweep::LeaveSdk, nullptr};
    platform::SetEnvironment(sweep::kGateHooks,
                             std::to_string(reinterpret_cast<std::uintptr_t>(&hooks)));
    const int nth = std::atoi(platform::GetEnvironment(sweep::kRefusedAllocation).c_str());
    const std::string report = platform::GetEnvironment(sweep::kRefusalReport);
    const int before = sweep::AllocationsOutsideSdk();
    if (nth > 0) {
        support::RefuseAllocationsAfter(nth - 1, support::Refusal::kOne);
    }
    const int status = __real_main(argumentCount, arguments);
    const bool isRefused = support::GrantAllocations();
    const int count = sweep::AllocationsOutsideSdk() - before;
    if (std::FILE* const file = std::fopen(report.c_str(), "w")) {
        std::fprintf(file, "%d\n%d\n", isRefused ? 1 : 0, count);
        std::fclose(file);
    }
    return status;
}
