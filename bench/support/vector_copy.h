// vector_copy.h - a copy with ordinary loads and stores
#pragma once

#include <cstddef>

/// Copies 32 bytes at a time, with any alignment; the ranges must not overlap. Requires AVX2. Takes
/// as long as a conversion would if computing cost nothing. memcpy is no such limit: it may use
/// instructions that write cache lines without reading them first, which only suit a plain copy.
void CopyByVectors(void* destination, const void* source, std::size_t bytes);
