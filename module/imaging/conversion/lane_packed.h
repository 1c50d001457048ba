// lane_packed.h - packed pixels in lanes of 16 bytes, for instruction sets that shuffle within them
#pragma once

#include "imaging/conversion/packed_pixels.h"

namespace pyxen {

namespace {

/// 16 pixels: 8 from the step's first 16 bytes and 8 from its last 16.
template <typename Set, typename Layout>
struct LanePackedStep : Layout {
    static constexpr int kStepPixels = 16;
    static constexpr int kStepBytes = kStepPixels * Layout::kPixelBits / 8;
    static constexpr int kAlignment = Set::kAlignment;

    static void ConvertStep(const std::uint8_t* source, std::uint8_t* destination) {
        constexpr int kSecond = kStepBytes - 16;
        if constexpr (Set::kLanes == 2) {
            const auto bytes = Set::template Load<kSecond>(source);
            const auto places = Set::JoinLanes(Places<0>(0), Places<8>(kSecond));
            Set::Store(destination, Layout::template Pixels<Set>(Set::Shuffle(bytes, places)));
        } else {
            const auto first = Set::Shuffle(Set::template Load<0>(source), Places<0>(0));
            const auto second =
                Set::Shuffle(Set::template Load<0>(source + kSecond), Places<8>(kSecond));
            Set::Store(destination, Layout::template Pixels<Set>(first));
            Set::Store(destination + 16, Layout::template Pixels<Set>(second));
        }
    }

protected:
    // The positions of eight pixels' bytes in a lane that begins with byte `start` of the block.
    template <int kFirst>
    static auto Places(int start) {
        const auto low = [start](int pixel) {
            return Layout::LowByte(kFirst + pixel) - start;
        };
        const auto high = [start](int pixel) {
            return Layout::HighByte(kFirst + pixel) - start;
        };
        return Set::Lane(low(0), high(0), low(1), high(1), low(2), high(2), low(3), high(3), low(4),
                         high(4), low(5), high(5), low(6), high(6), low(7), high(7));
    }
};

/// The same for instruction sets of two lanes with a single load, which also reads bytes before and
/// after those of the step: each lane's pixels are next to the middle.
template <typename Set, typename Layout>
struct WideLanePackedStep : LanePackedStep<Set, Layout> {
    using Base = LanePackedStep<Set, Layout>;
    static constexpr int kAround = 16 - Base::kStepBytes / 2;

    static void ConvertStep(const std::uint8_t* source, std::uint8_t* destination) {
        const auto places = Set::JoinLanes(Base::template Places<0>(-kAround),
                                           Base::template Places<8>(16 - kAround));
        Set::Store(destination,
                   Layout::template Pixels<Set>(Set::Shuffle(Set::Load(source - kAround), places)));
    }
};

} // namespace

} // namespace pyxen
