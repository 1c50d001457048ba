// camera_features_chunks.cpp - which data about a frame follows its image
#include "pxnc/simulator/camera.h"
#include "pxnc/simulator/camera_features.h"
#include "pxnc/simulator/chunk_data.h"

#include <bit>
#include <cassert>

namespace pxsim {
namespace {

constexpr FeatureRow kChunkRows[] = {
    {"ChunkModeActive", Bool{}, kExpert | kLocked, "Appends data about the frame to the image.",
     Extra{.affects = "ChunkEnable PayloadSize ImageSize"}},
    {"ChunkSelector", Enum{}, kExpert, "Chunk to enable or disable."},
    {"ChunkEnable", Bool{true}, kExpert | kLocked, "Includes the selected chunk.",
     Extra{.selectors = "ChunkSelector", .affects = "PayloadSize ImageSize"}},
};

std::uint64_t ChunkBits(const Camera& camera, const PxnFrame& frame, Chunk chunk) {
    switch (chunk) {
    case Chunk::kOffsetX:
        return frame.offsetX;
    case Chunk::kOffsetY:
        return frame.offsetY;
    case Chunk::kWidth:
        return frame.width;
    case Chunk::kHeight:
        return frame.height;
    case Chunk::kPixelFormat:
        return frame.pixelFormat;
    case Chunk::kTimestamp:
        return frame.timestamp;
    case Chunk::kFrameId:
        return frame.frameId;
    case Chunk::kExposureTime:
        return std::bit_cast<std::uint64_t>(camera.FloatValue("ExposureTime"));
    case Chunk::kGain:
        return std::bit_cast<std::uint64_t>(camera.FloatValue("Gain"));
    case Chunk::kLineStatusAll:
        return static_cast<std::uint64_t>(camera.IntValue("LineStatusAll"));
    }
    return 0;
}

} // namespace

void AddChunkDataControl(Camera& camera) {
    camera.AddTable("/ChunkDataControl", kChunkRows);
    camera.Get<Enum>("ChunkSelector").Entries(kChunkNames);
    camera.At("ChunkEnable").WritableWhen([&camera] {
        return camera.BoolValue("ChunkModeActive");
    });
}

std::uint32_t Camera::EnabledChunkMask() const {
    platform::MutexLock lock(mutex);
    std::uint32_t mask = 0;
    const BoolFeature& enable = Get<Bool>("ChunkEnable");
    for (std::uint32_t index = 0; index < kChunkCount; ++index) {
        mask |= enable.GetFor(index) ? 1u << index : 0u;
    }
    return mask;
}

std::uint32_t Camera::ChunkBytes() const {
    const auto enabled = static_cast<unsigned>(std::popcount(EnabledChunkMask()));
    return BoolValue("ChunkModeActive") ? ChunkListBytes(enabled) : 0;
}

void Camera::WriteChunks(const PxnFrame& frame, std::uint8_t* out, std::uint32_t bytes) {
    platform::MutexLock lock(mutex);
    const std::uint32_t mask = EnabledChunkMask();
    ChunkValue values[kChunkCount];
    std::size_t count = 0;
    for (std::uint32_t index = 0; index < kChunkCount; ++index) {
        if ((mask & (1u << index)) != 0) {
            const auto chunk = static_cast<Chunk>(index);
            values[count++] = {chunk, ChunkBits(*this, frame, chunk)};
        }
    }
    assert(ChunkListBytes(count) == bytes);
    (void)bytes;
    WriteChunkList(frame.imageSize, {values, count}, out);
}

} // namespace pxsim
