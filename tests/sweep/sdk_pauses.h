// sdk_pauses.h - inside the SDK's calls no allocation is refused
#pragma once

namespace sweep {

// A call of the SDK begins and ends on the calling thread. Its memory is not that of whoever calls
// it; nor is that of callbacks during the call.
void EnterSdk();
void LeaveSdk();
/// The allocations of the calling thread outside of the SDK's calls, so far.
int AllocationsOutsideSdk();

} // namespace sweep
