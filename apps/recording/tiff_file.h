// tiff_file.h - reads images from TIFF files
#pragma once

#include "apps/common/host_image.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// An open file. One thread at a time. All functions throw CommandFailure with the reason, without
/// the file's name.
class TiffFile {
public:
    explicit TiffFile(const std::string& path);
    ~TiffFile();
    TiffFile(const TiffFile&) = delete;
    TiffFile& operator=(const TiffFile&) = delete;

    /// Replaces `image` by the page whose directory is at `directory`, or by the first one for 0,
    /// which must be an image of the layout. `samples` is memory to work with.
    void Read(std::uint64_t directory, const ImageLayout& layout,
              std::vector<std::uint8_t>& samples, std::vector<std::uint8_t>& image);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};
