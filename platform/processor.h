// processor.h - instruction sets that the processor supports
#pragma once

#include <cstdint>

namespace platform {

// True when the processor has the instructions and the operating system preserves their registers.
// Any thread.

/// SSSE3 and SSE4.1.
bool HasSse41();
bool HasAvx2();
/// AVX-512 F, BW, VL and VBMI.
bool HasAvx512Vbmi();

/// The size of the largest cache, which several cores may share, in bytes; 0 when the processor
/// does not state it. Any thread.
std::uint64_t LargestCacheBytes();

} // namespace platform
