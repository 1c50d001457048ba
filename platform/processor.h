// processor.h - what the processor can do
#pragma once

namespace platform {

// Each answers whether the processor has the instructions and the system keeps their registers.
// Any thread.

/// SSSE3 and SSE4.1.
bool HasSse41();
bool HasAvx2();
/// AVX-512 with its foundation, byte and word, vector length and byte permutation parts.
bool HasAvx512Vbmi();

} // namespace platform
