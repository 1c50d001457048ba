// image_decoder.h - images from the forms in which files hold them
//
// The reverse of image_encoder.h: `image` is replaced by an image of the layout, with the values
// that were encoded. All functions throw CommandFailure with the reason when the content is damaged
// or is another image than the layout says, and may be called from any thread.
#pragma once

#include "apps/common/host_image.h"

#include <cstdint>
#include <string>
#include <vector>

/// False for layouts that no image has, and for those whose size overflows.
bool IsPossibleImage(const ImageLayout& layout);

/// `samples` is memory to work with.
void DecodePng(const std::string& content, const ImageLayout& layout,
               std::vector<std::uint8_t>& samples, std::vector<std::uint8_t>& image);

void DecodePnm(const std::string& content, const ImageLayout& layout,
               std::vector<std::uint8_t>& image);
