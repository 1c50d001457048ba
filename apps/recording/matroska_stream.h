// matroska_stream.h - pictures with their times as a Matroska file that can be read from a pipe
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// Not compressed, 8 bits, YUV 4:2:0: what every program for videos reads. The parts are appended
/// one after the other; none is changed later.
class MatroskaStream {
public:
    /// Both sizes are even. `intervalNs` is the usual distance of frames; 0 when none is known.
    MatroskaStream(std::uint32_t pictureWidth, std::uint32_t pictureHeight,
                   std::uint64_t intervalNs);

    /// What comes before the first picture.
    std::string Head() const;
    /// What comes before a picture, in the order of their times since the first one.
    std::string BeforePicture(std::uint64_t timeNs) const;
    /// Bytes of a picture: all Y, then all U, then all V.
    std::size_t PictureBytes() const { return std::size_t{width} * height * 3 / 2; }

private:
    const std::uint32_t width;
    const std::uint32_t height;
    const std::uint64_t interval;
};
