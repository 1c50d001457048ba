// chunk_data.cpp - what a camera appends to its images, written and read
#include "pxnc/simulator/chunk_data.h"

#include "pxnc/simulator/big_endian.h"
#include "pxnc/simulator/pixel_formats.h"

#include <algorithm>
#include <bit>
#include <iterator>

namespace pxsim {
namespace {

std::uint8_t* WriteTail(std::uint32_t id, std::uint32_t bytes, std::uint8_t* out) {
    StoreBigEndian(id, out);
    StoreBigEndian(bytes, out + 4);
    return out + kChunkTailBytes;
}

void AddChunk(Module& module, const ChunkValue& value) {
    const std::string name =
        std::string("Chunk") + kChunkNames[static_cast<std::size_t>(value.chunk)];
    FeatureRow rows[] = {
        {name.c_str(), Int{static_cast<std::int64_t>(value.bits)}, kBeginner | kReadOnly,
         "Value at the time of the frame."},
    };
    FeatureRow& row = rows[0];
    if (value.chunk == Chunk::kExposureTime || value.chunk == Chunk::kGain) {
        row.type = Float{std::bit_cast<double>(value.bits)};
        row.extra.unit = value.chunk == Chunk::kGain ? "dB" : "µs";
    } else if (value.chunk == Chunk::kPixelFormat) {
        row.type = Enum{};
        row.text = "Pixel format of the frame.";
    }
    module.AddTable("/ChunkDataControl", rows);
    if (value.chunk == Chunk::kPixelFormat) {
        EnumFeature& format = module.Get<Enum>(name.c_str()).PixelFormatEntries();
        // Several names may share a code; the first is shown.
        const std::span<const PixelFormat> all = AllPixelFormats();
        const auto first = std::find_if(all.begin(), all.end(), [&value](const PixelFormat& one) {
            return one.code == value.bits;
        });
        if (first != all.end()) {
            format.Value(first->name);
        }
    }
}

} // namespace

std::uint32_t ChunkListBytes(std::size_t count) {
    return kChunkTailBytes +
           static_cast<std::uint32_t>(count) * (kChunkValueBytes + kChunkTailBytes);
}

void WriteChunkList(std::uint32_t imageBytes, std::span<const ChunkValue> values,
                    std::uint8_t* out) {
    out = WriteTail(kImageChunkId, imageBytes, out);
    for (const ChunkValue& value : values) {
        StoreBigEndian(static_cast<std::uint32_t>(value.bits >> 32), out);
        StoreBigEndian(static_cast<std::uint32_t>(value.bits), out + 4);
        out = WriteTail(kFirstChunkId + static_cast<std::uint32_t>(value.chunk), kChunkValueBytes,
                        out + kChunkValueBytes);
    }
}

bool ReadChunkList(const std::uint8_t* payload, std::size_t size, std::vector<ChunkValue>& values) {
    values.clear();
    while (size >= kChunkTailBytes) {
        const std::uint8_t* tail = payload + size - kChunkTailBytes;
        const std::uint32_t id = LoadBigEndian(tail);
        const std::size_t bytes = LoadBigEndian(tail + 4);
        size -= kChunkTailBytes;
        if (id == kImageChunkId) {
            return bytes == size;
        }
        const std::uint32_t index = id - kFirstChunkId;
        if (index >= std::size(kChunkNames) || bytes != kChunkValueBytes || bytes > size) {
            return false;
        }
        size -= bytes;
        const std::uint64_t high = LoadBigEndian(payload + size);
        values.push_back(
            {static_cast<Chunk>(index), (high << 32) | LoadBigEndian(payload + size + 4)});
    }
    return false;
}

ChunkModule::ChunkModule(skeleton::TextPool& pool, skeleton::Invalidations& dispatcher,
                         const std::vector<ChunkValue>& values)
    : Module(pool, dispatcher, std::make_shared<platform::Mutex>()) {
    for (const ChunkValue& value : values) {
        AddChunk(*this, value);
    }
}

} // namespace pxsim
