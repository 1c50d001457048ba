// sdk_pauses.cpp - inside the SDK's calls no allocation is refused
#include "tests/sweep/sdk_pauses.h"

#include "tests/support/allocations/failing_allocations.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <optional>

namespace sweep {
namespace {

constexpr std::size_t kDeepestCalls = 8; // inside each other's callbacks

thread_local std::array<std::optional<support::AllocationPause>, kDeepestCalls> pauses;
thread_local std::size_t depth = 0;
thread_local int countAtEntry = 0;
thread_local int countInside = 0;

} // namespace

void EnterSdk() {
    if (depth == kDeepestCalls) {
        std::abort();
    }
    if (depth == 0) {
        countAtEntry = support::AllocationCount();
    }
    pauses[depth++].emplace();
}

void LeaveSdk() {
    pauses[--depth].reset();
    if (depth == 0) {
        countInside += support::AllocationCount() - countAtEntry;
    }
}

int AllocationsOutsideSdk() {
    return support::AllocationCount() - countInside;
}

} // namespace sweep
