// converter_layouts.h - what each converter reads and writes, for tests of whole sets
#pragma once

#include "imaging/conversion/converter_set.h"

#include <cstddef>

/// One converter of every set.
struct ConverterLayout {
    const char* name;
    pyxen::ConvertFunction pyxen::ConverterSet::*converter;
    std::size_t groupPixels;
    std::size_t groupBytes;
    std::size_t pixelBytes;
    bool wholeGroups;       ///< what is less than a group is left out
    std::size_t bitsOfRest; ///< of a pixel beyond the last whole group

    std::size_t SourceBytes(std::size_t pixels) const {
        const std::size_t rest = wholeGroups ? 0 : pixels % groupPixels;
        return pixels / groupPixels * groupBytes + (rest * bitsOfRest + 7) / 8;
    }
    std::size_t DestinationBytes(std::size_t pixels) const {
        return (wholeGroups ? pixels - pixels % groupPixels : pixels) * pixelBytes;
    }
};

inline constexpr ConverterLayout kConverterLayouts[] = {
    {"Unpack10p", &pyxen::ConverterSet::unpack10p, 4, 5, 2, false, 10},
    {"Unpack12p", &pyxen::ConverterSet::unpack12p, 2, 3, 2, false, 12},
    {"Unpack10Packed", &pyxen::ConverterSet::unpack10Packed, 2, 3, 2, false, 12},
    {"Unpack12Packed", &pyxen::ConverterSet::unpack12Packed, 2, 3, 2, false, 12},
    {"ConvertYUV422", &pyxen::ConverterSet::convertYUV422, 2, 4, 3, true, 0},
    {"ConvertYUV444", &pyxen::ConverterSet::convertYUV444, 1, 3, 3, true, 0},
    {"ConvertYUV411", &pyxen::ConverterSet::convertYUV411, 4, 6, 3, true, 0},
};
