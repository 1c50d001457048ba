// plain_converters.h - converters for any processor; they also convert what others leave over
#pragma once

#include "imaging/conversion/converter_set.h"

namespace pyxen {

void PlainUnpack10p(const void* source, void* destination, std::uint64_t pixelCount);
void PlainUnpack12p(const void* source, void* destination, std::uint64_t pixelCount);
void PlainUnpack10Packed(const void* source, void* destination, std::uint64_t pixelCount);
void PlainUnpack12Packed(const void* source, void* destination, std::uint64_t pixelCount);
void PlainConvertYUV422(const void* source, void* destination, std::uint64_t pixelCount);
void PlainConvertYUV444(const void* source, void* destination, std::uint64_t pixelCount);
void PlainConvertYUV411(const void* source, void* destination, std::uint64_t pixelCount);

} // namespace pyxen
