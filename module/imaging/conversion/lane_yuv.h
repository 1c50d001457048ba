// lane_yuv.h - YUV to RGB in lanes of 16 bytes, for instruction sets that shuffle within them
//
// Each lane takes 16 pixels. `Set` names the operations of an instruction set; the lanes of its
// vectors are loaded from addresses a fixed number of bytes apart.
#pragma once

#include "imaging/conversion/blocks.h"
#include "imaging/conversion/yuv_pixels.h"

namespace pyxen {

namespace {

inline constexpr int kLanePixels = 16;

// The source byte in a lane of each byte of the result; a set top bit gives 0, so that the
// contributions of the components can be combined by "or".
struct LanePlaces {
    std::uint8_t bytes[16];
};

struct RgbPlaces {
    LanePlaces blueRed[3];
    LanePlaces green[3];
    unsigned secondInMiddle; // which numbers of four bytes the middle takes of the second half
};

// The middle 16 bytes have pixels 5 to 10, whose blue and red fill all of a vector that takes some
// numbers of the first half and the others of the second.
constexpr RgbPlaces MakeRgbPlaces(int (*blueOf)(int pixelOfEight)) {
    RgbPlaces places{};
    for (int third = 0; third < 3; ++third) {
        for (int index = 0; index < 16; ++index) {
            const int component = third * 16 + index;
            const int pixel = component / 3;
            const bool isGreen = component % 3 == 1;
            const int red = component % 3 == 0 ? 1 : 0;
            const auto place = static_cast<std::uint8_t>(blueOf(pixel % 8) + red);
            const auto at = static_cast<unsigned>(index);
            places.blueRed[third].bytes[at] = isGreen ? 0x80 : place;
            places.green[third].bytes[at] = isGreen ? static_cast<std::uint8_t>(pixel) : 0x80;
            if (third == 1 && pixel >= 8 && !isGreen) {
                places.secondInMiddle |= 1u << place / 4;
            }
        }
    }
    return places;
}

// True when no number of the middle is wanted of both halves.
constexpr bool IsMiddleClear(const RgbPlaces& places, int (*blueOf)(int pixelOfEight)) {
    for (int pixel = 5; pixel < 8; ++pixel) {
        if ((places.secondInMiddle >> blueOf(pixel) / 4 & 1) != 0) {
            return false;
        }
    }
    return true;
}

inline constexpr RgbPlaces kPairPlaces = MakeRgbPlaces(PairBlue);
inline constexpr RgbPlaces kQuadPlaces = MakeRgbPlaces(QuadBlue);
static_assert(IsMiddleClear(kPairPlaces, PairBlue) && IsMiddleClear(kQuadPlaces, QuadBlue));

template <typename Set, const RgbPlaces& kPlaces, typename Vector = typename Set::Vector>
void StoreRgb(std::uint8_t* destination, const PackedPixels<Set>& pixels) {
    const auto combine = [&pixels](Vector blueRed, int third) {
        return Set::Or(Set::Shuffle(blueRed, Set::Lanes(kPlaces.blueRed[third].bytes)),
                       Set::Shuffle(pixels.green, Set::Lanes(kPlaces.green[third].bytes)));
    };
    const Vector middle = Set::template ChooseNumbers<kPlaces.secondInMiddle>(pixels.firstBlueRed,
                                                                              pixels.secondBlueRed);
    Set::StoreLanes(destination, combine(pixels.firstBlueRed, 0), combine(middle, 1),
                    combine(pixels.secondBlueRed, 2));
}

template <typename Set>
struct Yuv422Block {
    static constexpr int kPixels = kLanePixels * Set::kLanes;
    static constexpr int kPixelBytes = 3;
    static constexpr int kGroupPixels = 2;
    static constexpr int kGroupBytes = 4;
    static constexpr int kAlignment = Set::kAlignment;

    static void Convert(const std::uint8_t* source, std::uint8_t* destination) {
        StoreRgb<Set, kPairPlaces>(
            destination,
            PackPairs<Set>(Set::template Load<32>(source), Set::template Load<32>(source + 16)));
    }
};

// Groups U, Y0, Y1, V, Y2, Y3 become two groups of 4:2:2 each.
template <typename Set>
struct Yuv411Block {
    static constexpr int kPixels = kLanePixels * Set::kLanes;
    static constexpr int kPixelBytes = 3;
    static constexpr int kGroupPixels = 4;
    static constexpr int kGroupBytes = 6;
    static constexpr int kAlignment = Set::kAlignment;

    static void Convert(const std::uint8_t* source, std::uint8_t* destination) {
        // The second load ends with the lane's last byte, so it begins 4 bytes early.
        StoreRgb<Set, kPairPlaces>(
            destination,
            PackPairs<Set>(
                Set::Shuffle(Set::template Load<24>(source),
                             Set::Lanes(0, 1, 3, 2, 0, 4, 3, 5, 6, 7, 9, 8, 6, 10, 9, 11)),
                Set::Shuffle(Set::template Load<24>(source + 8),
                             Set::Lanes(4, 5, 7, 6, 4, 8, 7, 9, 10, 11, 13, 12, 10, 14, 13, 15))));
    }
};

template <typename Set>
struct Yuv444Block {
    static constexpr int kPixels = kLanePixels * Set::kLanes;
    static constexpr int kPixelBytes = 3;
    static constexpr int kGroupPixels = 1;
    static constexpr int kGroupBytes = 3;
    static constexpr int kAlignment = Set::kAlignment;

    static void Convert(const std::uint8_t* source, std::uint8_t* destination) {
        const auto spread = [source](int from) {
            return Set::Shuffle(Set::template Load<48>(source + from),
                                Set::Lanes(0, 1, 2, 1, 3, 4, 5, 4, 6, 7, 8, 7, 9, 10, 11, 10));
        };
        // The last load ends with the lane's last byte, so it begins 4 bytes early.
        const auto last =
            Set::Shuffle(Set::template Load<48>(source + 32),
                         Set::Lanes(4, 5, 6, 5, 7, 8, 9, 8, 10, 11, 12, 11, 13, 14, 15, 14));
        StoreRgb<Set, kQuadPlaces>(destination,
                                   PackQuads<Set>(spread(0), spread(12), spread(24), last));
    }
};

} // namespace

} // namespace pyxen
