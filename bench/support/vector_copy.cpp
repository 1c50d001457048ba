// vector_copy.cpp - a copy with ordinary loads and stores
#include "bench/support/vector_copy.h"

#include <immintrin.h>

#include <cstdint>
#include <cstring>

namespace {

constexpr std::size_t kStep = 32;

} // namespace

__attribute__((target("avx2"))) void CopyByVectors(void* destination, const void* source,
                                                   std::size_t bytes) {
    auto* to = static_cast<std::uint8_t*>(destination);
    const auto* from = static_cast<const std::uint8_t*>(source);
    const std::size_t unaligned = (0 - reinterpret_cast<std::uintptr_t>(to)) % kStep;
    std::memcpy(to, from, unaligned);
    std::size_t at = unaligned;
    for (; at + 4 * kStep <= bytes; at += 4 * kStep) {
        for (std::size_t part = 0; part < 4 * kStep; part += kStep) {
            _mm256_store_si256(
                reinterpret_cast<__m256i*>(to + at + part),
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from + at + part)));
        }
    }
    std::memcpy(to + at, from + at, bytes - at);
}
