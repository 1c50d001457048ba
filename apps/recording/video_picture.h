// video_picture.h - recorded images as pictures of a video
#pragma once

#include "apps/common/host_image.h"

#include <cstdint>
#include <string>

/// Replaces `picture` by the image in YUV 4:2:0 of 8 bits in the range of television (16 to 235):
/// all Y, then all U, then all V. Colour filter images become coloured; an odd width or height
/// grows by one, which repeats the last column or line.
void MakeVideoPicture(const ImageLayout& layout, const void* image, std::string& picture);

/// The sizes of that picture.
inline std::uint32_t EvenSize(std::uint32_t size) {
    return size + size % 2;
}
