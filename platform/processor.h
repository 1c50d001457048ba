// processor.h - instruction sets that the processor supports
#pragma once

namespace platform {

// True when the processor has the instructions and the operating system preserves their registers.
// Any thread.

/// SSSE3 and SSE4.1.
bool HasSse41();
bool HasAvx2();
/// AVX-512 F, BW, VL and VBMI.
bool HasAvx512Vbmi();

} // namespace platform
