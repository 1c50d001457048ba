// picture.cpp - a picture in grey, RGB or RGBA
#include "apps/common/picture.h"

#include "apps/common/demosaic.h"

std::array<std::uint32_t, 4> ChannelOrder(MV_COLORCODING coding) {
    switch (coding) {
    case MVCC_ARGB:
        return {1, 2, 3, 0};
    case MVCC_BGR:
    case MVCC_BGRA:
        return {2, 1, 0, 3};
    default:
        return {0, 1, 2, 3};
    }
}

Picture MakePicture(const ImageLayout& layout, const void* data, bool demosaic) {
    const ImageReader reader(layout, data);
    if (demosaic && layout.colorCoding == MVCC_RAW_CFA) {
        return Demosaic(reader);
    }
    Picture picture{layout.width, layout.height, layout.components, layout.bits, {}};
    picture.samples.reserve(std::size_t{layout.width} * layout.height * layout.components);
    const std::array<std::uint32_t, 4> order = ChannelOrder(layout.colorCoding);
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        for (std::uint32_t x = 0; x < layout.width; ++x) {
            for (std::uint32_t channel = 0; channel < layout.components; ++channel) {
                picture.samples.push_back(
                    static_cast<std::uint16_t>(reader.At(x, y, order[channel])));
            }
        }
    }
    return picture;
}

std::uint8_t ScaleTo8Bits(std::uint32_t sample, std::uint32_t bits) {
    if (bits >= 8) {
        return static_cast<std::uint8_t>(sample >> (bits - 8));
    }
    const std::uint32_t most = (1u << bits) - 1;
    return static_cast<std::uint8_t>((sample * 255 + most / 2) / most);
}
