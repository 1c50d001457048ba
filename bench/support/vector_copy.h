// vector_copy.h - a copy by ordinary loads and stores
#pragma once

#include <cstddef>

/// Copies 32 bytes at a time; `destination` may lie anywhere, and neither overlaps the other. What
/// a conversion that cost nothing would take: `memcpy` itself uses instructions that need not read
/// the lines they write, which nothing but a copy can use. Needs AVX2.
void CopyByVectors(void* destination, const void* source, std::size_t bytes);
