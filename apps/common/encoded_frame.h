// encoded_frame.h - an image in the form in which a file holds it
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// A frame ready to be written: `head`, the pixels, `tail`. `pixels` points into `body` or, when
/// the image can be written as it stands, into the image itself, which then has to stay. An object
/// that is used again keeps its memory.
struct EncodedFrame {
    std::vector<std::uint8_t> head;
    std::vector<std::uint8_t> body;
    std::vector<std::uint8_t> tail;
    const std::uint8_t* pixels = nullptr;
    std::size_t pixelBytes = 0;
};
