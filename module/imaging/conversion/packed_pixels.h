// packed_pixels.h - extracts pixels from packed bytes
//
// Each layout gives the two bytes that hold a pixel, the low-order one first, and how the word
// formed of them becomes the pixel. `Set` names the operations of an instruction set.
#pragma once

#include "imaging/conversion/blocks.h"

namespace pyxen {

namespace {

template <int kBits>
struct PackedGroups {
    static constexpr int kPixelBits = kBits;
    static constexpr int kPixelBytes = 2;
    static constexpr int kGroupPixels = kBits == 10 ? 4 : 2;
    static constexpr int kGroupBytes = kBits == 10 ? 5 : 3;
};

/// A block of four steps: the loop would cost as much as a single one.
template <typename Step>
struct FourSteps : Step {
    static constexpr int kPixels = 4 * Step::kStepPixels;

    static void Convert(const std::uint8_t* source, std::uint8_t* destination) {
        constexpr int kResult = Step::kStepPixels * Step::kPixelBytes;
        Step::ConvertStep(source, destination);
        Step::ConvertStep(source + Step::kStepBytes, destination + kResult);
        Step::ConvertStep(source + 2 * Step::kStepBytes, destination + 2 * kResult);
        Step::ConvertStep(source + 3 * Step::kStepBytes, destination + 3 * kResult);
    }
};

struct Layout10p : PackedGroups<10> {
    static constexpr int LowByte(int pixel) { return pixel * 10 / 8; }
    static constexpr int HighByte(int pixel) { return LowByte(pixel) + 1; }
    // Multiplying moves each pixel to the top of its word.
    template <typename Set>
    static typename Set::Vector Pixels(typename Set::Vector words) {
        return Set::template ShiftWordsRightUnsigned<6>(
            Set::MultiplyLow(words, Set::FillQuads(0x0001000400100040)));
    }
};

struct Layout12p : PackedGroups<12> {
    static constexpr int LowByte(int pixel) { return pixel * 12 / 8; }
    static constexpr int HighByte(int pixel) { return LowByte(pixel) + 1; }
    template <typename Set>
    static typename Set::Vector Pixels(typename Set::Vector words) {
        return Set::template ShiftWordsRightUnsigned<4>(
            Set::MultiplyLow(words, Set::Fill(0x00010010)));
    }
};

// Of the three bytes of two pixels the middle one holds the low bits of both.
struct Layout10Packed : PackedGroups<12> {
    static constexpr int LowByte(int pixel) { return pixel / 2 * 3 + 1; }
    static constexpr int HighByte(int pixel) { return pixel / 2 * 3 + pixel % 2 * 2; }
    // The first pixel's low bits are lowest in their byte, the second's are four bits higher:
    // high * 64 + low * 16, and high * 64 + low.
    template <typename Set>
    static typename Set::Vector Pixels(typename Set::Vector words) {
        const auto lowBits = Set::And(words, Set::Fill(static_cast<int>(0xFF30FF03)));
        return Set::template ShiftWordsRightUnsigned<4>(
            Set::MultiplyAddBytes(lowBits, Set::Fill(0x40014010)));
    }
};

struct Layout12Packed : PackedGroups<12> {
    static constexpr int LowByte(int pixel) { return pixel / 2 * 3 + 1; }
    static constexpr int HighByte(int pixel) { return pixel / 2 * 3 + pixel % 2 * 2; }
    // The first pixel's low bits are in place already.
    template <typename Set>
    static typename Set::Vector Pixels(typename Set::Vector words) {
        return Set::Select(Set::Fill(0x0000000F), words,
                           Set::template ShiftWordsRightUnsigned<4>(words));
    }
};

} // namespace

} // namespace pyxen
