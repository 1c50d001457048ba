// frame_reader.h - reads the frames of a recording back
#pragma once

#include "apps/common/host_image.h"
#include "apps/recording/frame_store.h"
#include "apps/recording/tiff_file.h"

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

/// Gives the images back as they were in the host's memory, whatever the files hold: PNG's samples
/// are moved down again, and of a colour filter image in colour the filter's own colours are taken.
/// Alpha, which PNM files do not hold, is opaque. One thread at a time.
class FrameReader {
public:
    /// `frameFormat` is that of FrameStoreOptions. Throws CommandFailure for an unknown one.
    FrameReader(std::string recordingDirectory, std::string frameFormat);

    /// Replaces `image` by the frame. Throws CommandFailure with the file and the reason when that
    /// is missing, damaged, or holds another image than the layout says.
    void Read(const StoredFrame& frame, const ImageLayout& layout,
              std::vector<std::uint8_t>& image);

private:
    void ReadBytes(const StoredFrame& frame, const ImageLayout& layout,
                   std::vector<std::uint8_t>& image);
    void Open(const std::string& name);
    void ReadPage(const StoredFrame& frame, const ImageLayout& layout,
                  std::vector<std::uint8_t>& image);

    const std::string directory;
    const std::string format;
    std::string openName; // of `file`, which is kept open for the next frame
    std::ifstream file;
    std::uint64_t fileBytes = 0;
    std::unique_ptr<TiffFile> pages; // likewise
    std::vector<std::uint8_t> samples;
};
