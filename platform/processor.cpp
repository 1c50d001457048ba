// processor.cpp - instruction sets that the processor supports
#include "platform/processor.h"

#if defined(_MSC_VER)

#include <immintrin.h>
#include <intrin.h>

namespace {

struct Leaf {
    int registers[4]; // eax, ebx, ecx, edx
    bool Has(int index, int bit) const { return (registers[index] >> bit & 1) != 0; }
};

Leaf ReadLeaf(int number) {
    Leaf leaf{};
    __cpuid(leaf.registers, 0);
    if (leaf.registers[0] < number) {
        return Leaf{};
    }
    __cpuidex(leaf.registers, number, 0);
    return leaf;
}

// True when the operating system saves all register states in `mask`.
bool SavesRegisters(unsigned mask) {
    return ReadLeaf(1).Has(2, 27) && (static_cast<unsigned>(_xgetbv(0)) & mask) == mask;
}

constexpr unsigned kYmmState = 0x06;
constexpr unsigned kZmmState = 0xE6;

} // namespace

bool platform::HasSse41() {
    const Leaf leaf = ReadLeaf(1);
    return leaf.Has(2, 9) && leaf.Has(2, 19);
}

bool platform::HasAvx2() {
    return SavesRegisters(kYmmState) && ReadLeaf(7).Has(1, 5);
}

bool platform::HasAvx512Vbmi() {
    const Leaf leaf = ReadLeaf(7);
    return SavesRegisters(kZmmState) && leaf.Has(1, 16) && leaf.Has(1, 30) && leaf.Has(1, 31) &&
           leaf.Has(2, 1);
}

#else

// The built-in function also checks that the operating system saves the registers.
bool platform::HasSse41() {
    return __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("sse4.1");
}

bool platform::HasAvx2() {
    return __builtin_cpu_supports("avx2");
}

bool platform::HasAvx512Vbmi() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi");
}

#endif
