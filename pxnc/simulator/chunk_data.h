// chunk_data.h - what a camera appends to its images, written and read
#pragma once

#include "pxnc/simulator/module.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace pxsim {

// The image is followed by a list of chunks, each its bytes and then a tail of two big-endian
// words: the identifier and the number of bytes. It is read from the end; the image itself is
// the first chunk.

/// The parts that can be switched on, in the order of the entries of ChunkSelector.
enum class Chunk : std::uint32_t {
    kOffsetX,
    kOffsetY,
    kWidth,
    kHeight,
    kPixelFormat,
    kTimestamp,
    kFrameId,
    kExposureTime,
    kGain,
    kLineStatusAll,
};

inline constexpr const char* kChunkNames[] = {
    "OffsetX",   "OffsetY", "Width",        "Height", "PixelFormat",
    "Timestamp", "FrameID", "ExposureTime", "Gain",   "LineStatusAll"};
inline constexpr std::uint32_t kChunkCount = 10;
static_assert(sizeof kChunkNames / sizeof *kChunkNames == kChunkCount);
inline constexpr std::uint32_t kChunkTailBytes = 8;
inline constexpr std::uint32_t kImageChunkId = 0xA5A50000;
inline constexpr std::uint32_t kFirstChunkId = 0xA5A50001;

/// Every chunk except the image holds 8 bytes, big-endian: an integer or a double.
inline constexpr std::uint32_t kChunkValueBytes = 8;

struct ChunkValue {
    Chunk chunk;
    std::uint64_t bits; // of the integer or the double
};

/// Bytes of the list for `count` chunks in addition to the image.
std::uint32_t ChunkListBytes(std::size_t count);
/// Writes the list that follows an image of `imageBytes`.
void WriteChunkList(std::uint32_t imageBytes, std::span<const ChunkValue> values,
                    std::uint8_t* out);
/// Reads the list at the end of a payload; false when it is malformed.
bool ReadChunkList(const std::uint8_t* payload, std::size_t size, std::vector<ChunkValue>& values);

/// The features "ChunkWidth", "ChunkTimestamp" and so on of one frame.
class ChunkModule : public Module {
public:
    ChunkModule(skeleton::TextPool& strings, skeleton::Invalidations& events,
                const std::vector<ChunkValue>& values);
};

} // namespace pxsim
