// video_picture.cpp - recorded images as pictures of a video
#include "apps/recording/video_picture.h"

#include "apps/common/picture.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace {

constexpr std::uint32_t kColourChannels = 3;

/// Red, green and blue of 8 bits.
using Colour = std::array<int, kColourChannels>;

// The weights of ITU-R BT.601, times 65536.
constexpr int kHalf = 1 << 15;

int Luma(const Colour& colour) {
    return 16 + ((16829 * colour[0] + 33039 * colour[1] + 6416 * colour[2] + kHalf) >> 16);
}

int BlueDifference(const Colour& colour) {
    return 128 + ((-9714 * colour[0] - 19070 * colour[1] + 28784 * colour[2] + kHalf) >> 16);
}

int RedDifference(const Colour& colour) {
    return 128 + ((28784 * colour[0] - 24103 * colour[1] - 4681 * colour[2] + kHalf) >> 16);
}

class Source {
public:
    explicit Source(Picture sourcePicture)
        : picture(std::move(sourcePicture)), shift(picture.bits > 8 ? picture.bits - 8 : 0) {}

    /// The last column and line go on behind the edge.
    Colour At(std::uint32_t x, std::uint32_t y) const {
        const std::size_t pixel = std::size_t{std::min(y, picture.height - 1)} * picture.width +
                                  std::min(x, picture.width - 1);
        const std::uint16_t* const samples = &picture.samples[pixel * picture.channels];
        const bool isColour = picture.channels >= kColourChannels;
        Colour colour;
        for (std::uint32_t channel = 0; channel < kColourChannels; ++channel) {
            colour[channel] = samples[isColour ? channel : 0] >> shift;
        }
        return colour;
    }

private:
    const Picture picture;
    const std::uint32_t shift;
};

} // namespace

void MakeVideoPicture(const ImageLayout& layout, const void* image, std::string& picture) {
    const Source source(MakePicture(layout, image, true));
    const std::uint32_t width = EvenSize(layout.width);
    const std::uint32_t height = EvenSize(layout.height);
    const std::size_t pixels = std::size_t{width} * height;
    picture.resize(pixels * 3 / 2);
    char* luma = picture.data();
    char* blue = luma + pixels;
    char* red = blue + pixels / 4;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            *luma++ = static_cast<char>(Luma(source.At(x, y)));
        }
    }
    for (std::uint32_t y = 0; y < height; y += 2) {
        for (std::uint32_t x = 0; x < width; x += 2) {
            Colour mean{};
            for (const auto& [right, down] :
                 {std::array{0u, 0u}, std::array{1u, 0u}, std::array{0u, 1u}, std::array{1u, 1u}}) {
                const Colour one = source.At(x + right, y + down);
                for (std::uint32_t channel = 0; channel < kColourChannels; ++channel) {
                    mean[channel] += one[channel];
                }
            }
            for (int& channel : mean) {
                channel = (channel + 2) / 4;
            }
            *blue++ = static_cast<char>(BlueDifference(mean));
            *red++ = static_cast<char>(RedDifference(mean));
        }
    }
}
