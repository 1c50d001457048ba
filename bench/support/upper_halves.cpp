// upper_halves.cpp - clearing the upper halves of the vector registers
#include "bench/support/upper_halves.h"

#include "platform/processor.h"

#include <immintrin.h>

namespace {

__attribute__((target("avx"))) void ZeroUpper() {
    _mm256_zeroupper();
}

} // namespace

void ClearUpperHalves() {
    if (platform::HasAvx2()) {
        ZeroUpper();
    }
}
