// intrin.h - declares what the project uses of Visual C++'s header of that name
//
// Clang's own header of that name and the headers of MinGW-w64 define the same functions.
#pragma once

#include <immintrin.h>

extern "C" {
void __cpuid(int registers[4], int leaf);
void __cpuidex(int registers[4], int leaf, int subleaf);
}
