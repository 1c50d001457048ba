// display_image.cpp - converts pictures for the screen
#include "apps/view/display_image.h"

DisplayImage MakeDisplayImage(const Picture& picture) {
    DisplayImage image{picture.width, picture.height, {}};
    const std::size_t count = std::size_t{picture.width} * picture.height;
    image.pixels.resize(count);
    const std::uint16_t* sample = picture.samples.data();
    const std::size_t green = picture.channels == 1 ? 0 : 1;
    const std::size_t blue = picture.channels == 1 ? 0 : 2;
    for (std::size_t i = 0; i < count; ++i) {
        image.pixels[i] = static_cast<std::uint32_t>(ScaleTo8Bits(sample[0], picture.bits)) << 16 |
                          static_cast<std::uint32_t>(ScaleTo8Bits(sample[green], picture.bits))
                              << 8 |
                          ScaleTo8Bits(sample[blue], picture.bits);
        sample += picture.channels;
    }
    return image;
}
