// frame_store.h - where the frames of a recording are kept
#pragma once

#include "apps/common/encoded_frame.h"
#include "apps/common/host_image.h"

#include <cstdint>
#include <memory>
#include <string>

/// How frames are kept.
struct FrameStoreOptions {
    /// A file for each frame: tiff, png, pnm, raw. One file for all: multi-tiff, with a page for
    /// each frame, and stack, whose frames follow one another as they lie in memory.
    std::string format = "png";
    std::uint32_t pngLevel = 1; ///< 0, not compressed, to 9
    bool deflate = false;       ///< compress the pixels of TIFF files
    /// 0 if not known. A multi-page file that may become longer than 4 GB is a BigTIFF file;
    /// another one takes no frame beyond that.
    std::uint64_t expectedFrames = 0;
};

/// Where a frame is.
struct StoredFrame {
    std::string file;         ///< name within the directory
    std::uint64_t offset = 0; ///< of its first byte in a stack, of its page's directory in a
                              ///< multi-page file, else 0
    std::uint64_t bytes = 0;  ///< that it takes in the file
};

/// Keeps frames in a directory. What is written has its final name when it is whole, not before.
class FrameStore {
public:
    virtual ~FrameStore() = default;

    /// Makes a frame ready to be written. Any thread, several at once. Throws CommandFailure for a
    /// layout that the format cannot hold.
    virtual void Encode(const ImageLayout& layout, const void* image,
                        EncodedFrame& result) const = 0;
    /// Writes a frame that was encoded from `layout`. One thread, in the order of `number`, which
    /// becomes a part of the file's name: "frame-000001.png". Throws CommandFailure; the frame is
    /// not there then, and those before it are.
    virtual StoredFrame Append(std::uint64_t number, const ImageLayout& layout,
                               const EncodedFrame& frame) = 0;
    /// Once, after the last Append, be it one that failed: gives the one file for all its name,
    /// unless it is empty. Throws CommandFailure. A store that is destroyed without leaves no such
    /// file.
    virtual void Finish() = 0;
};

/// Creates the directory when there is none, and the one file for all. Throws CommandFailure.
std::unique_ptr<FrameStore> MakeFrameStore(const FrameStoreOptions& options,
                                           const std::string& directory);
