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
    LanePlaces blueRed[4]; // first in the first 16 bytes, first and second in the next, second
    LanePlaces green[3];
};

constexpr RgbPlaces MakeRgbPlaces(int (*blueOf)(int pixelOfEight)) {
    RgbPlaces places{};
    for (LanePlaces& lane : places.blueRed) {
        for (std::uint8_t& place : lane.bytes) {
            place = 0x80;
        }
    }
    for (LanePlaces& lane : places.green) {
        for (std::uint8_t& place : lane.bytes) {
            place = 0x80;
        }
    }
    for (int index = 0; index < 48; ++index) {
        const int pixel = index / 3;
        const int third = index / 16;
        if (index % 3 == 1) {
            places.green[third].bytes[index % 16] = static_cast<std::uint8_t>(pixel);
        } else {
            const int red = index % 3 == 0 ? 1 : 0;
            places.blueRed[third + pixel / 8].bytes[index % 16] =
                static_cast<std::uint8_t>(blueOf(pixel % 8) + red);
        }
    }
    return places;
}

inline constexpr RgbPlaces kPairPlaces = MakeRgbPlaces(PairBlue);
inline constexpr RgbPlaces kQuadPlaces = MakeRgbPlaces(QuadBlue);

template <typename Set, typename Vector = typename Set::Vector>
void StoreRgb(std::uint8_t* destination, const RgbPlaces& places, const PackedPixels<Set>& pixels) {
    const auto pick = [](Vector from, const LanePlaces& lane) {
        return Set::Shuffle(from, Set::Lanes(lane.bytes));
    };
    const Vector first =
        Set::Or(pick(pixels.firstBlueRed, places.blueRed[0]), pick(pixels.green, places.green[0]));
    const Vector second = Set::Or(Set::Or(pick(pixels.firstBlueRed, places.blueRed[1]),
                                          pick(pixels.secondBlueRed, places.blueRed[2])),
                                  pick(pixels.green, places.green[1]));
    const Vector third =
        Set::Or(pick(pixels.secondBlueRed, places.blueRed[3]), pick(pixels.green, places.green[2]));
    Set::StoreLanes(destination, first, second, third);
}

template <typename Set>
struct Yuv422Block {
    static constexpr int kPixels = kLanePixels * Set::kLanes;
    static constexpr int kPixelBytes = 3;
    static constexpr int kGroupPixels = 2;
    static constexpr int kGroupBytes = 4;
    static constexpr int kAlignment = Set::kAlignment;

    static void Convert(const std::uint8_t* source, std::uint8_t* destination) {
        StoreRgb<Set>(
            destination, kPairPlaces,
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
        StoreRgb<Set>(
            destination, kPairPlaces,
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
        StoreRgb<Set>(destination, kQuadPlaces,
                      PackQuads<Set>(spread(0), spread(12), spread(24), last));
    }
};

} // namespace

} // namespace pyxen
