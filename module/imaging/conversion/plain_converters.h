// plain_converters.h - the converters for any processor, which also finish what the others leave
#pragma once

#include "imaging/conversion/converter_set.h"

void PlainUnpack10p(const void* source, void* destination, std::uint64_t pixelCount);
void PlainUnpack12p(const void* source, void* destination, std::uint64_t pixelCount);
void PlainUnpack10Packed(const void* source, void* destination, std::uint64_t pixelCount);
void PlainUnpack12Packed(const void* source, void* destination, std::uint64_t pixelCount);
void PlainConvertYUV422(const void* source, void* destination, std::uint64_t pixelCount);
void PlainConvertYUV444(const void* source, void* destination, std::uint64_t pixelCount);
void PlainConvertYUV411(const void* source, void* destination, std::uint64_t pixelCount);
