// processor.cpp - instruction sets that the processor supports
#include "platform/processor.h"

#include <algorithm>

#if defined(_MSC_VER)
#include <immintrin.h>
#include <intrin.h>
#else
#include <cpuid.h>
#endif

namespace {

struct Leaf {
    std::uint32_t registers[4]; // eax, ebx, ecx, edx
    bool Has(int index, int bit) const { return (registers[index] >> bit & 1) != 0; }
    std::uint32_t Bits(int index, int lowest, int count) const {
        return registers[index] >> lowest & ((std::uint32_t{1} << count) - 1);
    }
};

#if defined(_MSC_VER)

// Zeros when the processor does not have it.
Leaf ReadLeaf(std::uint32_t number, std::uint32_t part = 0) {
    int words[4]{};
    __cpuid(words, static_cast<int>(number & 0x80000000));
    if (static_cast<std::uint32_t>(words[0]) < number) {
        return Leaf{};
    }
    __cpuidex(words, static_cast<int>(number), static_cast<int>(part));
    Leaf leaf{};
    std::copy(words, words + 4, leaf.registers);
    return leaf;
}

#else

// Zeros when the processor does not have it.
Leaf ReadLeaf(std::uint32_t number, std::uint32_t part = 0) {
    Leaf leaf{};
    __get_cpuid_count(number, part, &leaf.registers[0], &leaf.registers[1], &leaf.registers[2],
                      &leaf.registers[3]);
    return leaf;
}

#endif

// The largest cache among the parts of a leaf that describes one each.
std::uint64_t LargestCacheOf(std::uint32_t leafNumber) {
    constexpr std::uint32_t kMostCaches = 16;
    std::uint64_t largest = 0;
    for (std::uint32_t part = 0; part < kMostCaches; ++part) {
        const Leaf leaf = ReadLeaf(leafNumber, part);
        if (leaf.Bits(0, 0, 5) == 0) {
            break; // no further cache
        }
        const std::uint64_t ways = leaf.Bits(1, 22, 10) + 1;
        const std::uint64_t partitions = leaf.Bits(1, 12, 10) + 1;
        const std::uint64_t lineBytes = leaf.Bits(1, 0, 12) + 1;
        const std::uint64_t sets = std::uint64_t{leaf.registers[2]} + 1;
        largest = std::max(largest, ways * partitions * lineBytes * sets);
    }
    return largest;
}

} // namespace

// Makers put the same description into one leaf or the other.
std::uint64_t platform::LargestCacheBytes() {
    return std::max(LargestCacheOf(4), LargestCacheOf(0x8000001D));
}

#if defined(_MSC_VER)

namespace {

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
