// yuv_pixels.h - YUV to blue, red and green bytes, in integers
//
// For an integer luma Y the clamped truncation of Y + t is the clamp of Y + floor(t), so chroma
// contributes one integer per component. For all U and V from 0 to 255 these are exactly
//   red    floor(1.40199958 V - 179.4557903) = ((104 V * 56542 >> 16) - 11485) >> 6
//   blue   floor(1.77200007 U - 226.816062)  = ((121 U * 61423 >> 16) - 14516) >> 6
//   green  floor(135.4587945 - (0.344135677 U + 0.71413615 V))
//                                  = (568155264 - 121 U * 11929 - 104 V * 28801) >> 22
// 121 U and 104 V serve all three: of the multiples that fit a word only these leave both green
// exact with factors of a word and red and blue with one shift.
#pragma once

#include <cstdint>

namespace pyxen {

namespace {

// One value for the words at even positions and one for those at odd positions.
constexpr int WordPair(int even, int odd) {
    return static_cast<int>(static_cast<std::uint32_t>(even & 0xFFFF) |
                            static_cast<std::uint32_t>(odd & 0xFFFF) << 16);
}

// Of the bytes U, any, V, any.
inline constexpr int kChromaMultiples = WordPair(121, 104);

inline constexpr int kBlueRedFactors = WordPair(61423, 56542);
inline constexpr int kBlueRedOffsets = WordPair(14516, 11485);
inline constexpr int kBlueRedShift = 6;

inline constexpr int kGreenFactors = WordPair(-11929, -28801);
inline constexpr int kGreenOffset = 568155264;
inline constexpr int kGreenShift = 22;

/// What chroma contributes, for groups of four bytes U, any, V, any.
template <typename Set>
struct YuvTerms {
    using Vector = typename Set::Vector;
    Vector blueRed; ///< words: blue, red
    Vector green;   ///< one number in four bytes
};

/// `Set` names the operations of an instruction set.
template <typename Set, typename Vector = typename Set::Vector>
YuvTerms<Set> ChromaTerms(Vector groups) {
    const Vector chroma = Set::MultiplyAddBytes(groups, Set::Fill(kChromaMultiples));
    const Vector blueRed = Set::SubtractWords(Set::MultiplyHigh(chroma, Set::Fill(kBlueRedFactors)),
                                              Set::Fill(kBlueRedOffsets));
    const Vector green = Set::AddNumbers(Set::MultiplyAdd(chroma, Set::Fill(kGreenFactors)),
                                         Set::Fill(kGreenOffset));
    return {Set::template ShiftWordsRight<kBlueRedShift>(blueRed),
            Set::template ShiftNumbersRight<kGreenShift>(green)};
}

/// Pixels before packing: words of alternating blue and red, and words of green.
template <typename Set>
struct PairPixels {
    using Vector = typename Set::Vector;
    Vector evenBlueRed; ///< of the first pixel of each pair
    Vector oddBlueRed;  ///< of the second
    Vector green;
};

/// For groups U, Y0, V, Y1.
template <typename Set, typename Vector = typename Set::Vector>
PairPixels<Set> ConvertPairs(Vector groups) {
    constexpr int kNo = 0x80; // gives 0: the high bytes of luma words
    const auto terms = ChromaTerms<Set>(groups);
    const Vector evenLuma = Set::Shuffle(
        groups, Set::Lanes(1, kNo, 1, kNo, 5, kNo, 5, kNo, 9, kNo, 9, kNo, 13, kNo, 13, kNo));
    const Vector oddLuma = Set::Shuffle(
        groups, Set::Lanes(3, kNo, 3, kNo, 7, kNo, 7, kNo, 11, kNo, 11, kNo, 15, kNo, 15, kNo));
    const Vector green =
        Set::Shuffle(terms.green, Set::Lanes(0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13));
    return {Set::AddWords(evenLuma, terms.blueRed), Set::AddWords(oddLuma, terms.blueRed),
            Set::AddWords(Set::template ShiftWordsRightUnsigned<8>(groups), green)};
}

/// Pixels that each have chroma: words of alternating blue and red, and green in four bytes.
template <typename Set>
struct QuadPixels {
    using Vector = typename Set::Vector;
    Vector blueRed;
    Vector green;
};

/// For groups U, Y, V, Y.
template <typename Set, typename Vector = typename Set::Vector>
QuadPixels<Set> ConvertQuads(Vector groups) {
    const auto terms = ChromaTerms<Set>(groups);
    return {Set::AddWords(Set::template ShiftWordsRightUnsigned<8>(groups), terms.blueRed),
            Set::AddNumbers(Set::template ShiftNumbersRightUnsigned<24>(groups), terms.green)};
}

/// Bytes in the order that packing gives within each lane of 16: alternating blue and red of the
/// first and of the second half of the pixels, and green of all.
template <typename Set>
struct PackedPixels {
    using Vector = typename Set::Vector;
    Vector firstBlueRed;
    Vector secondBlueRed;
    Vector green;
};

/// Of a lane's eight pixels in a half, the even ones' bytes come first.
template <typename Set, typename Vector = typename Set::Vector>
PackedPixels<Set> PackPairs(Vector firstGroups, Vector secondGroups) {
    const auto a = ConvertPairs<Set>(firstGroups);
    const auto b = ConvertPairs<Set>(secondGroups);
    return {Set::PackWords(a.evenBlueRed, a.oddBlueRed),
            Set::PackWords(b.evenBlueRed, b.oddBlueRed), Set::PackWords(a.green, b.green)};
}
constexpr int PairBlue(int pixelOfEight) {
    return pixelOfEight % 2 * 8 + pixelOfEight / 2 * 2;
}

/// A lane's pixels keep their order.
template <typename Set, typename Vector = typename Set::Vector>
PackedPixels<Set> PackQuads(Vector firstGroups, Vector secondGroups, Vector thirdGroups,
                            Vector fourthGroups) {
    const auto a = ConvertQuads<Set>(firstGroups);
    const auto b = ConvertQuads<Set>(secondGroups);
    const auto c = ConvertQuads<Set>(thirdGroups);
    const auto d = ConvertQuads<Set>(fourthGroups);
    return {Set::PackWords(a.blueRed, b.blueRed), Set::PackWords(c.blueRed, d.blueRed),
            Set::PackWords(Set::PackNumbers(a.green, b.green), Set::PackNumbers(c.green, d.green))};
}
constexpr int QuadBlue(int pixelOfEight) {
    return pixelOfEight * 2;
}

} // namespace

} // namespace pyxen
